What changed, and the reasons of the rest counted; everything with --verbose.

  $ letters Flute=bn.wlg2 Oboe=nnnnnnn >in.xml
  $ sokrun fill in.xml --staves 1 --check
  in.xml: Fill Empty Measures with Rests
  Flute  measure 3  filled: no layer holds music
  1 rest in, 0 rests out; 6 of 7 staff-measures kept (3 music, 1 whole rest, 1 looks whole, 1 rest beside grace)
  [3]
  $ sokrun fill in.xml --staves 1 --check -v
  in.xml: Fill Empty Measures with Rests
  Flute  measure 1  kept: layer 1 is shown and holds music
  Flute  measure 2  kept: layer 1 is shown and holds music
  Flute  measure 3  filled: no layer holds music
  Flute  measure 4  kept: layer 1 is shown and holds a whole-measure rest
  Flute  measure 5  kept: layer 1 is shown and holds a real rest that only looks like a whole-measure rest
  Flute  measure 6  kept: layer 1 is shown and holds grace notes beside its whole-measure rest
  Flute  measure 7  kept: layer 2 is shown and holds music
  1 rest in, 0 rests out; 6 of 7 staff-measures kept (3 music, 1 whole rest, 1 looks whole, 1 rest beside grace)
  [3]
  $ sokrun clear in.xml --staves 1 --check -v
  in.xml: Clear Whole-Measure Rests
  Flute  measure 1  kept: layer 1 holds music
  Flute  measure 2  kept: layer 1 holds music
  Flute  measure 3  kept: nothing to do
  Flute  measure 4  cleared: layer 1 held a whole-measure rest
  Flute  measure 5  kept: layer 1 holds a real rest that only looks like a whole-measure rest
  Flute  measure 6  kept: layer 1 holds grace notes beside its whole-measure rest
  Flute  measure 7  kept: layer 2 holds music
  0 rests in, 1 rest out; 6 of 7 staff-measures kept (3 music, 1 looks whole, 1 rest beside grace, 1 nothing)
  [3]
  $ letters Flute=n...n. Oboe=nnnnnn numbers=0,1,,2,X1,3 >in.xml
  $ sokrun fill in.xml --check
  in.xml: Fill Empty Measures with Rests
  Flute  measures 2-4, 6 (printed 1-2, 3)  filled: no layer holds music
  4 rests in, 0 rests out; 8 of 12 staff-measures kept (8 music)
  [3]
  $ sokrun fill in.xml --check --only-changed
  in.xml: Fill Empty Measures with Rests
  Flute  measures 2-4, 6 (printed 1-2, 3)  filled: no layer holds music
  4 rests in, 0 rests out; 8 of 12 staff-measures kept
  [3]
  $ sokrun fill in.xml --check --quiet
  [3]

JSON for programs.

  $ letters 'Flute "1"=bw' Oboe=n2 numbers=7,8 >in.xml
  $ sokrun clear in.xml -o out.xml --json | grep -v '"plugin"'
  {
   "version": 2,
   "command": {
    "number": 0
   },
   "files": [
    {
     "file": "in.xml",
     "status": "changed",
     "written": "out.xml",
     "measures": 2,
     "staves": [
      {
       "part": "Flute \"1\"",
       "part_id": "P1",
       "staff": 1
      },
      {
       "part": "Oboe",
       "part_id": "P2",
       "staff": 1
      }
     ],
     "rests_in": 0,
     "rests_out": 1,
     "selected": 4,
     "kept": 3,
     "kept_reasons": {
      "music": 3
     },
     "warnings": [],
     "alerts": [],
     "cells": [
      {
       "measure": 2,
       "number": "8",
       "staff": 1,
       "outcome": "cleared",
       "reason": "whole-rest",
       "layer": 1,
       "layer_shown": true,
       "text": "layer 1 held a whole-measure rest"
      }
     ]
    }
   ],
   "summary": {
    "files": 1,
    "changed": 1,
    "unchanged": 0,
    "failed": 0,
    "rests_in": 0,
    "rests_out": 1
   }
  }

Other extensions are reported, too; what a score does not carry is lost, and named.

  $ letters Flute=n. >in.xml
  $ sokrun run 1 in.xml --check --plugin "$TEST_EXTENSION"
  in.xml: alert: a word
      from the extension
  in.xml: line 11: measure 2 holds nothing that takes time; it counts as long as its time signature says
  in.xml: the command "Leak and Talk" did not free 1 frame
  in.xml: the command "Leak and Talk" did not end its edit "Half Done"
  in.xml: Leak and Talk
  0 staff-measures changed; 2 of 2 staff-measures kept (2 nothing)
  $ sokrun run 3 in.xml --check --plugin "$TEST_EXTENSION"
  in.xml: line 11: measure 2 holds nothing that takes time; it counts as long as its time signature says
  in.xml: the extension changed ABCD (1 record added); only music is written back
  in.xml: the extension changed staves (1 record removed); only music is written back
  in.xml: the extension changed texts (1 record changed); only music is written back
  in.xml: Change Records
  0 staff-measures changed; 2 of 2 staff-measures kept (2 nothing)
  $ sokrun run 3 in.xml --check --plugin "$TEST_EXTENSION" --json 2>/dev/null | grep -A 18 '"records"' | tr -d ' \n'; echo
  "records":[{"kind":"ABCD","changed":0,"added":1,"removed":0},{"kind":"staves","changed":0,"added":0,"removed":1},{"kind":"texts","changed":1,"added":0,"removed":0}

The entries of what changed, before and after.

  $ sokrun run 2 in.xml --check --frames -q --plugin "$TEST_EXTENSION"
    measure staff layer number  entry             what it is
  +       1     1     1      2  r:1024            rest
  +       1     1     1      3  r:1024            rest
          1     1     1      1  C5:3072           note
  [3]
  $ sokrun run 2 in.xml in.xml --dry-run --frames --only-changed --measures 1 --plugin "$TEST_EXTENSION" 2>&1 >/dev/null | grep -A 2 'in.xml: frames'
  in.xml: frames
    measure staff layer number  entry             what it is
  +       1     1     1      2  r:1024            rest
  --
  in.xml: frames
    measure staff layer number  entry             what it is
  +       1     1     1      2  r:1024            rest
  $ sokrun run 2 in.xml --check --frames --json --plugin "$TEST_EXTENSION" 2>/dev/null | grep -A 99 '"frames"' | tr -d ' \n'; echo
  "frames":[{"measure":1,"staff":1,"layer":1,"before":[{"number":1,"duration":3072,"pitches":["C5"],"flags":["note"]}],"after":[{"number":2,"duration":1024,"pitches":[],"flags":["rest"]},{"number":3,"duration":1024,"pitches":[],"flags":["rest"]},{"number":1,"duration":3072,"pitches":["C5"],"flags":["note"]}]}]}],"summary":{"files":1,"changed":1,"unchanged":0,"failed":0,"rests_in":0,"rests_out":0}}
  $ sokrun fill in.xml --check --frames -q
    measure staff layer number  entry             what it is
  +       2     1     1      2  r:4096            whole-measure rest, at B4
  [3]
  $ sokrun clear in.xml --check --frames -q

What changed without being selected, and what is left without its entry, is named.

  $ sokrun run 2 in.xml --check --measures 2 --plugin "$TEST_EXTENSION" 2>&1 | grep selected
  in.xml: measure 1, staff 1, layer 1 changed, which was not selected
  $ slur() { echo "s|</note>|<notations><slur type=\"$1\" number=\"1\"/></notations></note>|"; }
  $ letters Flute=wn | sed "0,/<\/note>/$(slur start); /number=\"2\"/,\$$(slur stop)" >marked.xml
  $ sokrun run 0 marked.xml --check 2>&1 | grep -E 'left|went'
  marked.xml: lines are left without their entry in measure 1 (1 record)
  Flute  measure 1  cleared: layer 1 held a whole-measure rest; slur went with the rest

A run that changes nothing needs no place for its result; one that does is not written without.

  $ sokrun run 1 in.xml -q --plugin "$TEST_EXTENSION"
  in.xml: alert: a word
      from the extension
  $ sokrun run 2 in.xml --plugin "$TEST_EXTENSION" 2>&1
  in.xml: line 11: measure 2 holds nothing that takes time; it counts as long as its time signature says
  sokrun: in.xml: it changed; say where the result goes: -o, --in-place or --output-dir
  in.xml: Add Rests
  Flute  measure 1  changed: layer 1: 2 entries in, longer than its measure now
  1 staff-measure changed; 1 of 2 staff-measures kept (1 nothing); not written
  [1]

Traces, and a host that lacks something.

  $ sokrun fill in.xml --check --trace -q 2>&1 | grep -E 'LoadTGF\(0 1 1 0|MaxLayers'
  SX_GetMaxLayers() -> 4
  SX_LoadTGF(0 1 1 0 1) -> frame of 1 entry
  $ sokrun run 2 in.xml --check --trace -q --plugin "$TEST_EXTENSION" 2>&1 | grep Save
  SX_SaveTGF(1,1,0 3) -> 1: r:1024 r:1024 C5:3072
  $ sokrun fill in.xml --check --trace-changed -q 2>&1 | head -3
  measure 2, staff 1:
    SX_LoadTGF(0 1 2 0 1) -> frame of 0 entries
    SX_FreeTGF(1,2,0 0) -> 1
  $ sokrun fill in.xml --check --without SX_InsertEXENTRY -v
  in.xml: line 11: measure 2 holds nothing that takes time; it counts as long as its time signature says
  in.xml: Fill Empty Measures with Rests
  Flute  measure 1  kept: layer 1 is shown and holds music
  Flute  measure 2  kept: the extension or the host refused
  0 rests in, 0 rests out; 2 of 2 staff-measures kept (1 music, 1 passed over)

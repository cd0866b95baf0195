Many files: one report in order, and failures that stay with their file.

  $ mkdir -p in/deeper in/.hidden
  $ letters Flute=n. >in/a.musicxml; letters Flute=nn >in/deeper/a.XML; letters Flute=.. Oboe=n. >in/z.musicxml
  $ letters Flute=n. | head -c 300 >in/b.xml
  $ echo 'no score' | tee in/other.xml in/deeper/notes.txt >in/.hidden/c.xml

  $ sokrun fill in --output-dir in/out -j 3
  in: passed over 1 file without a MusicXML score
  in/a.musicxml: line 11: measure 2 holds nothing that takes time; it counts as long as its time signature says
  in/a.musicxml: Fill Empty Measures with Rests
  Flute  measure 2  filled: no layer holds music; its length is assumed, nothing in the measure tells it
  1 rest in, 0 rests out; 1 of 2 staff-measures kept (1 music) -> in/out/a.musicxml
  sokrun: in/b.xml:8: elements do not end as they begin, or the text is cut off
  in/deeper/a.XML: Fill Empty Measures with Rests
  0 rests in, 0 rests out; 2 of 2 staff-measures kept (2 music) -> in/out/deeper/a.XML
  in/z.musicxml: line 11: measure 2 holds nothing that takes time; it counts as long as its time signature says
  in/z.musicxml: Fill Empty Measures with Rests
  Flute  measure 1  filled: no layer holds music
  Flute  measure 2  filled: no layer holds music; its length is assumed, nothing in the measure tells it
  Oboe   measure 2  filled: no layer holds music; its length is assumed, nothing in the measure tells it
  3 rests in, 0 rests out; 1 of 4 staff-measures kept (1 music) -> in/out/z.musicxml
  4 files: 2 changed, 1 unchanged, 1 failed; 4 rests in, 0 rests out
  [1]
  $ sokrun fill in gone --output-dir in/out -j 1 | tail -1
  in: passed over 1 file without a MusicXML score
  in/a.musicxml: line 11: measure 2 holds nothing that takes time; it counts as long as its time signature says
  sokrun: in/b.xml:8: elements do not end as they begin, or the text is cut off
  in/z.musicxml: line 11: measure 2 holds nothing that takes time; it counts as long as its time signature says
  sokrun: gone: No such file or directory
  5 files: 2 changed, 1 unchanged, 2 failed; 4 rests in, 0 rests out
  $ (cd in/out && for score in */* *l; do echo "$score" $(letters <"$score"); done)
  deeper/a.XML nn
  a.musicxml nw
  z.musicxml ww nw
  $ sokrun fill in --check --only-changed 2>/dev/null
  in/a.musicxml: Fill Empty Measures with Rests
  Flute  measure 2  filled: no layer holds music; its length is assumed, nothing in the measure tells it
  1 rest in, 0 rests out; 1 of 2 staff-measures kept
  in/z.musicxml: Fill Empty Measures with Rests
  Flute  measure 1  filled: no layer holds music
  Flute  measure 2  filled: no layer holds music; its length is assumed, nothing in the measure tells it
  Oboe   measure 2  filled: no layer holds music; its length is assumed, nothing in the measure tells it
  3 rests in, 0 rests out; 1 of 4 staff-measures kept
  7 files: 2 changed, 4 unchanged, 1 failed; 4 rests in, 0 rests out
  [1]
  $ sokrun fill in gone --check --json 2>/dev/null | grep -E '^ *"(status|files|changed|unchanged|failed|rests_in)": '
   "files": [
     "status": "changed",
     "rests_in": 1,
     "status": "failed",
     "status": "unchanged",
     "rests_in": 0,
     "status": "unchanged",
     "rests_in": 0,
     "status": "unchanged",
     "rests_in": 0,
     "status": "unchanged",
     "rests_in": 0,
     "status": "changed",
     "rests_in": 3,
     "status": "failed",
    "files": 8,
    "changed": 2,
    "unchanged": 4,
    "failed": 2,
    "rests_in": 4,

What an extension does to its process, or to stdout, is seen in the report of that file and nowhere else.

  $ mkdir crash; for n in nn n nnn; do letters Flute=$n >crash/$n.xml; done
  $ sokrun run 0 crash --check --plugin "$TEST_EXTENSION" --html page.html
  noise
  crash/n.xml: Crash
  0 staff-measures changed; 1 of 1 staff-measure kept (1 nothing)
  sokrun: crash/nn.xml: the process that ran the extension was ended by signal 6 (Aborted)
  noise
  sokrun: crash/nnn.xml: the extension ended the process, with exit code 0
  3 files: 0 changed, 1 unchanged, 2 failed; 0 rests in, 0 rests out
  [1]
  $ sokrun run 0 crash/nnn.xml --check --plugin "$TEST_EXTENSION" --json 2>/dev/null | grep -E 'error|"failed"'
     "status": "failed",
     "error": "crash/nnn.xml: the extension ended the process, with exit code 0"
    "failed": 1,
  $ grep -c 'ended the process' page.html
  1

Warnings of one kind in a row are one line.

  $ letters Flute=nnn | sed 's|<note>|<backup><duration>9</duration></backup><note>|' >back.xml
  $ sokrun fill back.xml --check
  back.xml: line 9: part P1, measure 1: a <backup> goes back beyond the start of the measure; it ends there (and 2 more like this)
  back.xml: Fill Empty Measures with Rests
  0 rests in, 0 rests out; 3 of 3 staff-measures kept (3 music)
  $ sokrun fill back.xml --check -v 2>&1 >/dev/null
  back.xml: line 9: part P1, measure 1: a <backup> goes back beyond the start of the measure; it ends there
  back.xml: line 12: part P1, measure 2: a <backup> goes back beyond the start of the measure; it ends there
  back.xml: line 15: part P1, measure 3: a <backup> goes back beyond the start of the measure; it ends there

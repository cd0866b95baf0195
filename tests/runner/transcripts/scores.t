scan, inspect, records, texts and shapes: a score as an extension finds it. Nothing is changed.

  $ cp "$TESTDIR/small.musicxml" before; cp before small.musicxml
  $ sokrun scan small.musicxml
  small.musicxml: measure 1, Ob\x9boe, layer 1: lone bar rest
  small.musicxml: measure 2, Ob\x9boe: empty measure
  small.musicxml: measure 3, Flute, layer 1: hidden rest: a bar rest that is not printed
  small.musicxml: measure 3, Ob\x9boe, layer 1: look-alike rest: a real rest as long as the measure
  small.musicxml: 3 measures, 2 staves: 1 empty measure, 1 lone bar rest, 1 look-alike rest, 1 hidden rest, 0 surplus voices
  $ touch empty.musicxml; sokrun scan empty.musicxml small.musicxml --json
  sokrun: empty.musicxml: the file is empty
  {
   "version": 2,
   "files": [
    {
     "file": "empty.musicxml",
     "error": "empty.musicxml: the file is empty"
    },
    {
     "file": "small.musicxml",
     "measures": 3,
     "staves": 2,
     "counts": {
      "empty": 1,
      "bar-rest": 1,
      "look-alike": 1,
      "hidden-rest": 1,
      "surplus-voices": 0
     },
     "findings": [
      {
       "measure": 1,
       "number": "1",
       "staff": 2,
       "layer": 1,
       "finding": "bar-rest"
      },
      {
       "measure": 2,
       "number": "2",
       "staff": 2,
       "layer": null,
       "finding": "empty"
      },
      {
       "measure": 3,
       "number": "3",
       "staff": 1,
       "layer": 1,
       "finding": "hidden-rest"
      },
      {
       "measure": 3,
       "number": "3",
       "staff": 2,
       "layer": 1,
       "finding": "look-alike"
      }
     ]
    }
   ],
   "summary": {
    "files": 2,
    "failed": 1,
    "counts": {
     "empty": 1,
     "bar-rest": 1,
     "look-alike": 1,
     "hidden-rest": 1,
     "surplus-voices": 0
    }
   }
  }
  [1]
  $ sokrun inspect small.musicxml frames
  measure staff layer number  entry             what it is
        1     1     1      1  C5:1024           note
        1     1     1      2  D5:1024           note
        1     2     1      5  r:4096            whole-measure rest, at B4
        2     1     1      3  E6:2048           note
        3     1     1      4  r:4096            whole-measure rest, at B4
        3     2     1      6  r:2048            rest
  $ ratio='<time-modification><actual-notes>3</actual-notes><normal-notes>2</normal-notes></time-modification>'
  $ place='<rest><display-step>D</display-step><display-octave>5</display-octave></rest>'
  $ sed "s|<type>quarter</type>|&$ratio|; s|<rest/>|$place|" small.musicxml | sokrun inspect - frames | grep -E 'tup|at D'
        1     1     1      1  C5:1024           note, tuplet 3:2
        1     1     1      2  D5:1024           note, tuplet 3:2
        3     2     1      6  r:2048            rest, at D5
  $ sokrun inspect small.musicxml nothing
  sokrun: TOPIC: nothing not in {frames,records,texts,shapes}
  Try `sokrun inspect --help`.
  [2]
  $ sokrun records small.musicxml --tag SOM --tag SOIu
  tag   key               size  bytes
  SOIu  0,0                 24  01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  SOIu  0,1                 24  02 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  SOMS  1,0                 30  00 00 00 00 02 00 00 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  SOMS  2,0                 30  00 00 00 00 02 00 00 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  SOMS  3,0                 30  00 00 00 00 02 00 00 04 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00
  $ sokrun records small.musicxml --tag no-such-tag
  tag   key               size  bytes
  small.musicxml: no records of that tag
  $ sokrun texts - <small.musicxml
  place                    text                             as stored
  page 1                   Größe                            ^efx(bold)Größe
  staff 1, name            Flute                            Flute
  staff 1, short name      Fl.                              Fl.
  staff 2, name            Ob\x9boe                         Ob\x9boe
  staff 1, measure 1       dolce e lento                    ^efx(italic)dolce\ne lento
  $ sokrun texts none.musicxml
  sokrun: none.musicxml: No such file or directory
  [1]
  $ sokrun shapes small.musicxml
  shape  kind         staff   from, in units #entry    to
  1      crescendo    1       measure 1 +0             measure 1 +2048
  2      slur         1       measure 1 +0 #1          measure 2 +0 #3
  3      8va          1       measure 2 +0             measure 2 +2048
  
  list   staves
  1      1
  2      2

A kind alone, a part of the score, several scores, the worst first.

  $ sokrun scan small.musicxml --check empty --measures 2-3
  small.musicxml: measure 2, Ob\x9boe: empty measure
  small.musicxml: 3 measures, 2 staves: 1 empty measure
  [3]
  $ letters Flute=nn >sound.musicxml; sokrun scan small.musicxml sound.musicxml --check surplus-voices -q
  small.musicxml: 3 measures, 2 staves: 0 surplus voices
  sound.musicxml: 2 measures, 1 staff: 0 surplus voices
  2 files: 0 surplus voices
  $ sokrun scan sound.musicxml small.musicxml empty.musicxml -q -j 2 --html edition.html
  sound.musicxml: 2 measures, 1 staff: 0 empty measures, 0 lone bar rests, 0 look-alike rests, 0 hidden rests, 0 surplus voices
  small.musicxml: 3 measures, 2 staves: 1 empty measure, 1 lone bar rest, 1 look-alike rest, 1 hidden rest, 0 surplus voices
  sokrun: empty.musicxml: the file is empty
  3 files: 1 empty measure, 1 lone bar rest, 1 look-alike rest, 1 hidden rest, 0 surplus voices, 1 failed
  [1]
  $ grep -oE '<th scope="row">[^<]*' edition.html
  <th scope="row">empty.musicxml
  <th scope="row">small.musicxml
  <th scope="row">sound.musicxml
  $ cmp small.musicxml before

The last measure that there can be is the last one that is shown.

  $ letters Flute=n >one; python3 -c "print(open('one').read().replace('</measure>', '</measure>' + '<measure/>' * 32766))" >long.xml
  $ sokrun inspect long.xml frames 2>/dev/null | head -9
  measure staff layer number  entry             what it is
        1     1     1      1  C5:3072           note

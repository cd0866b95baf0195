Where results go, and in which form.

  $ letters Flute=nl >untouched.xml; letters Flute=n.w Oboe=.b. >in.xml
  $ sokrun fill untouched.xml -o out.xml -q && cmp untouched.xml out.xml

Filled and cleared is cleared, save that an element without content may come back in XML's short form.

  $ sokrun fill in.xml -o filled.xml -q && sokrun clear filled.xml -i -q && sokrun clear in.xml -o cleared.xml -q
  $ short() { tr -d '\n ' <"$1" | sed 's|"></measure>|"/>|g'; }
  $ cmp <(short filled.xml) <(short cleared.xml)

Streams keep the report out of the score.

  $ sokrun fill - <in.xml 2>report | letters; cat report
  nww
  wnw
  stdin: Fill Empty Measures with Rests
  Flute  measure 2  filled: no layer holds music
  Oboe   measures 1, 3  filled: no layer holds music
  3 rests in, 0 rests out; 3 of 6 staff-measures kept (2 music, 1 whole rest) -> stdout
  $ sokrun fill in.xml -o - -q | letters
  nww
  wnw

The form follows the name; without a telling name, and over itself, it stays.

  $ sokrun fill in.xml -o packed.mxl -q && sokrun fill packed.mxl -o plain.musicxml -q && sokrun fill in.xml -o same.xml -q
  $ cmp plain.musicxml same.xml && python3 -m zipfile -l packed.mxl | cut -c1-22
  File Name             
  META-INF/container.xml
  packed.musicxml       
  $ sokrun clear packed.mxl -o out -q && head -c 2 out && echo
  PK
  $ cp packed.mxl lies.xml && sokrun clear lies.xml -i -q && head -c 2 lies.xml && echo
  PK

--check and --dry-run write nothing.

  $ letters Flute=nw >in.xml && cp in.xml before.xml
  $ sokrun clear in.xml --check -q
  [3]
  $ sokrun fill in.xml --check -q
  $ sokrun clear in.xml --dry-run 2>report; cat report
  --- in.xml
  +++ in.xml
  @@ -8,8 +8,6 @@
         <attributes><divisions>1</divisions><time><beats>3</beats><beat-type>4</beat-type></time></attributes>
         <note><pitch><step>C</step><octave>5</octave></pitch><duration>3</duration><voice>1</voice><type>half</type><dot/></note>
       </measure>
  -    <measure number="2">
  -      <note><rest measure="yes"/><duration>3</duration><voice>1</voice></note>
  -    </measure>
  +    <measure number="2"/>
     </part>
   </score-partwise>
  in.xml: Clear Whole-Measure Rests
  Flute  measure 2  cleared: layer 1 held a whole-measure rest
  0 rests in, 1 rest out; 1 of 2 staff-measures kept (1 music)
  $ sokrun clear in.xml --dry-run --json -q | grep -c '"diff": "--- in.xml'
  1
  $ cmp in.xml before.xml

Fermatas go with a rest, or stay when asked.

  $ letters Flute=nf >in.xml
  $ sokrun clear in.xml -o out.xml -q && grep -c '<fermata' out.xml
  0
  [1]
  $ sokrun clear in.xml -o out.xml --keep-fermatas | grep -o 'fermata.*'; grep -c '<fermata' out.xml
  fermata moved to the barline
  1

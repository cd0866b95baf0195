Look-alike rests become whole-measure rests, alone in their layer and nowhere else.

  $ letters Flute=nlw.l Oboe=lgnbn >in.xml
  $ sokrun run 0 in.xml --check --plugin "$REAL_RESTS" 2>/dev/null | grep -oE '^(Flute|Oboe) *measures? [0-9, -]*[0-9]'
  Flute  measures 2, 5
  Oboe   measure 1
  $ sokrun run 0 in.xml --plugin "$REAL_RESTS" -o out.xml -q; letters <out.xml; diff in.xml out.xml | grep -c '^[<>]'
  nww.w
  wnnnn
  6
  $ sokrun validate "$REAL_RESTS" --only-failed --seed 1 | tail -1 | grep -o ', 0 failed'
  , 0 failed

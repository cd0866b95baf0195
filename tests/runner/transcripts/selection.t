What is selected is changed, and nothing else. `changed` runs a command on a score and shows the measures of the result.

  $ changed() { sokrun "$@" in.xml -o out.xml -q --hidden-rests entry && letters <out.xml; }

  $ letters Flute=n.w Oboe=..l >in.xml; changed fill
  nww
  wwl
  $ letters Flute=nwl Oboe=wgh >in.xml; changed clear
  n.l
  .n.
  $ letters Flute=n..... >in.xml; changed fill --measures 2,4-
  nw.www
  $ letters Flute=....n >in.xml; changed fill --measures 3-4,-3
  wwwwn
  $ letters Flute=n.. >in.xml; changed fill --measures 2-99
  nww

Printed numbers: a number as it stands before a range, one that comes twice; both kinds of numbers add up.

  $ letters Flute=n.... numbers=6,1-0,7,X1,8a >in.xml; changed fill --numbers 1-0,7-8
  nww.w
  $ letters Flute=n.n. numbers=1,2,1,2 >in.xml; changed fill --numbers 2
  nwnw
  $ letters Flute=n... numbers=1,2,3,9 >in.xml; changed fill --measures 2 --numbers 9
  nw.w

  $ letters Flute=w Oboe=w Horn=w >in.xml; changed clear --staves 1,3
  .
  w
  .
  $ letters Flute=n. Oboe=n. Horn=n. >in.xml; changed fill --parts oboe --parts P3
  n.
  nw
  nw

A layer has to be hidden and allowed to be, on the staves where it counts as empty.

  $ letters Flute=b2 Oboe=b2 Horn=b2 >in.xml
  $ sokrun fill in.xml --check --hide-layer 2
  in.xml: layer 2 is hidden, but its music still counts; --allow-hidden 2 lets it count as empty
  in.xml: Fill Empty Measures with Rests
  0 rests in, 0 rests out; 6 of 6 staff-measures kept (6 music)
  $ sokrun fill in.xml --check --allow-hidden 2 -q
  $ sokrun fill in.xml --check --hide-layer 2:1,3 --allow-hidden 2 --measures 2
  in.xml: Fill Empty Measures with Rests
  Flute  measure 2  filled: layer 2 holds music, but is hidden and does not count
  Horn   measure 2  filled: layer 2 holds music, but is hidden and does not count
  2 rests in, 0 rests out; 1 of 3 staff-measures kept (1 music)
  [3]

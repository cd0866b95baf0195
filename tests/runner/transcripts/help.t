help and version, in every spelling; a wrong word gets the nearest command (refusals.t).

  $ sokrun help fill | diff - <(sokrun fill --help) && sokrun version | diff - <(sokrun -V) && sokrun help | head -1
  Runs extension bundles on MusicXML scores: fills empty measures with rests, or clears them.
  $ sokrun help nothing
  sokrun: there is no command nothing
  [2]

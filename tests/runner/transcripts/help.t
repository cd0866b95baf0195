help and version, in every spelling; a wrong word gets the nearest command (refusals.t).

  $ sokrun help fill | diff - <(sokrun fill --help) && sokrun version | diff - <(sokrun -V) && sokrun help | head -1
  $ sokrun help nothing

// Shares the time among the parts: whenever a processor is free, the part that had least of it begins its next round.

const mostFindings = 10;  // of one part; then it rests

export class Share {
  // `start(part, seed)` begins a round; `tell(part, seed, result)` hears how it ended.
  constructor({ parts, seconds, seed, places, start, tell }) {
    Object.assign(this, { seconds, places, start, tell });
    this.states = parts.map((part) => ({ part, next: seed, left: part.isLoop ? part.kinds.length : Infinity,
                                         used: 0, rounds: 0, findings: 0, running: new Map() }));
  }

  secondsLeft() {
    return this.isStopped ? 0 : Math.max(0, this.seconds - (performance.now() - this.begin) / 1000);
  }

  // No round begins after the end of the time; those that run go on to their end.
  async run() {
    this.begin = performance.now();
    for (;;) {
      while (this.running().length < this.places && this.secondsLeft() > 0 && this.startNext());
      if (this.running().length === 0) return;
      await Promise.race(this.running().map((round) => round.done));
    }
  }

  stop() {
    this.isStopped = true;
    for (const round of this.running()) round.stop();
  }

  // Of each part: its kinds, and the seed that would have been its next.
  ends() {
    return this.states.map(({ part, next }) => ({ part: part.name, kinds: part.kinds.length, next }));
  }

  running() {
    return this.states.flatMap((state) => [...state.running.values()]);
  }

  // What a part has had, where a round that runs counts as at least as long as its others.
  static cost(state) {
    const mean = state.rounds > 0 ? state.used / state.rounds : 1;
    return [...state.running.values()].reduce((sum, round) => sum + Math.max(mean, round.elapsed()), state.used);
  }

  startNext() {
    const ready = this.states.filter((state) => state.left > 0 && state.findings < mostFindings);
    if (ready.length === 0) return false;
    const state = ready.reduce((a, b) => (Share.cost(b) < Share.cost(a) ? b : a));
    const seed = state.next;
    state.next += 1;
    state.left -= 1;
    const round = this.start(state.part, seed);
    round.done = round.ended.then((result) => {
      state.running.delete(seed);
      state.used += result.seconds;
      state.rounds += 1;
      if (result.fault) state.findings += 1;
      this.tell(state.part, seed, result);
    });
    state.running.set(seed, round);
    return true;
  }
}

// The events of one order: those that the service lists, then those that the stream tells, each once.
import {ask} from './dom.js';

export class TimeLine {
  /** Shows each event with `show`, oldest first; `clear` takes away what was shown. */
  constructor(clear, show) {
    Object.assign(this, {clear, show, last: 0});
  }

  /** Takes an event of the stream. While the list is asked for, it waits: the list may hold it or not. */
  add(event) {
    if (this.waiting) {
      this.waiting.push(event);
    } else if (event.id > this.last) {
      this.last = event.id;
      this.show(event);
    }
  }

  /** Asks for the list; of several calls at a time the last one counts. */
  async load(id) {
    const waiting = this.waiting = [], isLast = () => this.waiting === waiting;
    let listed = [];
    try {
      listed = await ask('GET', `/sandbox/orders/${id}/events`);
      if (!isLast()) return;
      this.clear();
      this.last = 0;
    } finally {
      if (isLast()) {
        this.waiting = undefined;
        for (const event of [...listed, ...waiting]) this.add(event);
      }
    }
  }
}

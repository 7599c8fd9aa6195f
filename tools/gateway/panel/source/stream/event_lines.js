// Text of an event stream to events.

/** @typedef {{type: string, data: string, id: string}} StreamEvent */

export class EventLines {
    #rest = '';
    #type = '';
    /** @type {string[]} */
    #data = [];
    #id = '';
    #onEvent;

    /** @param {(event: StreamEvent) => void} onEvent */
    constructor(onEvent) {
        this.#onEvent = onEvent;
    }

    /** Any split of the stream gives the same events. @param {string} text */
    feed(text) {
        const lines = (this.#rest + text).split('\n');
        this.#rest = lines.pop() ?? '';
        for (const line of lines) {
            this.#read(line.endsWith('\r') ? line.slice(0, -1) : line);
        }
    }

    /** @param {string} line */
    #read(line) {
        if (line === '') {
            this.#finish();
            return;
        }
        const colon = line.indexOf(':');
        const field = colon < 0 ? line : line.slice(0, colon);
        const value = colon < 0 ? '' : line.slice(colon + (line[colon + 1] === ' ' ? 2 : 1));
        if (field === 'event') {
            this.#type = value;
        } else if (field === 'data') {
            this.#data.push(value);
        } else if (field === 'id') {
            this.#id = value;
        }
    }

    #finish() {
        if (this.#data.length > 0) {
            this.#onEvent({ type: this.#type || 'message', data: this.#data.join('\n'), id: this.#id });
        }
        this.#type = '';
        this.#data = [];
    }
}

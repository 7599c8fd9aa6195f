// The stream of changes: one connection, resumed where it broke off, and an honest answer to "is what I see live?".
import { EventLines } from './event_lines.js';

const doubtAfter = 900; // ms without a byte, then the gateway is asked
const answerWithin = 800; // ms for its answer; with the above and the step of the clock, silence is noticed within 2 s
const giveUpAfter = 12000; // ms without a byte: two heartbeats and a little
const step = 200;
const shortestRetry = 250;
const longestRetry = 4000;
const closeHiddenAfter = 60000;

/** @typedef {'connecting' | 'live' | 'lost' | 'ended'} StreamState */

/**
 * @typedef {object} Listener
 * @property {(type: string, data: any) => void} onEvent
 * @property {(state: StreamState) => void} onState lost as soon as nothing proves that the gateway still speaks
 * @property {() => void} onSignedOut
 */

export class EventStream {
    #path;
    #listener;
    /** @type {StreamState} */
    #state = 'connecting';
    #lastId = '';
    #lastByte = 0;
    #lastProof = 0;
    #asking = false;
    #isOpen = false;
    #retry = shortestRetry;
    /** @type {AbortController | null} */
    #connection = null;
    #clock = 0;
    #retryTimer = 0;
    #hiddenTimer = 0;

    /** @param {string} path @param {Listener} listener */
    constructor(path, listener) {
        this.#path = path;
        this.#listener = listener;
    }

    start() {
        this.#clock = setInterval(() => this.#watch(), step);
        document.addEventListener('visibilitychange', this.#onVisibility);
        this.#connect();
    }

    stop() {
        clearInterval(this.#clock);
        clearTimeout(this.#retryTimer);
        clearTimeout(this.#hiddenTimer);
        document.removeEventListener('visibilitychange', this.#onVisibility);
        this.#connection?.abort();
        this.#setState('ended');
    }

    get state() {
        return this.#state;
    }

    /** @param {StreamState} state */
    #setState(state) {
        if (this.#state !== state) {
            this.#state = state;
            this.#listener.onState(state);
        }
    }

    async #connect() {
        clearTimeout(this.#retryTimer);
        const connection = this.#connection = new AbortController();
        this.#isOpen = false;
        this.#lastByte = this.#lastProof = performance.now();
        try {
            const response = await fetch(this.#path, { headers: this.#headers(), signal: connection.signal, cache: 'no-store' });
            if (response.status === 401 || response.status === 403) {
                this.stop();
                this.#listener.onSignedOut();
                return;
            }
            if (response.ok && response.body) {
                await this.#read(response.body.getReader());
            }
        } catch {
            // The connection broke, or was given up; either way the next attempt follows.
        }
        if (connection === this.#connection && this.#state !== 'ended') {
            this.#reconnectLater();
        }
    }

    #headers() {
        return { Accept: 'text/event-stream', ...(this.#lastId ? { 'Last-Event-ID': this.#lastId } : {}) };
    }

    /** @param {ReadableStreamDefaultReader<Uint8Array>} reader */
    async #read(reader) {
        const decoder = new TextDecoder();
        this.#isOpen = true;
        const lines = new EventLines((event) => this.#take(event));
        for (;;) {
            const { done, value } = await reader.read();
            if (done) {
                return;
            }
            this.#lastByte = this.#lastProof = performance.now();
            this.#retry = shortestRetry;
            this.#setState('live');
            lines.feed(decoder.decode(value, { stream: true }));
        }
    }

    /** @param {import('./event_lines.js').StreamEvent} event */
    #take(event) {
        if (event.id) {
            this.#lastId = event.id;
        }
        this.#listener.onEvent(event.type, JSON.parse(event.data));
    }

    #reconnectLater() {
        this.#connection = null;
        this.#setState('lost');
        clearTimeout(this.#retryTimer);
        this.#retryTimer = setTimeout(() => this.#connect(), this.#retry * (0.75 + Math.random() / 2));
        this.#retry = Math.min(2 * this.#retry, longestRetry);
    }

    /** Between two heartbeats a cheap question shows that the gateway still answers. */
    #watch() {
        const now = performance.now();
        if (!this.#connection) {
            return;
        }
        if (now - this.#lastByte > giveUpAfter) {
            const broken = this.#connection;
            this.#reconnectLater();
            broken.abort();
        } else if (now - this.#lastProof > doubtAfter && !this.#asking) {
            this.#ask();
        }
    }

    async #ask() {
        this.#asking = true;
        try {
            await fetch('/healthz', { cache: 'no-store', signal: AbortSignal.timeout(answerWithin) });
            this.#lastProof = performance.now();
            if (this.#state === 'lost' && this.#connection && this.#isOpen) {
                this.#setState('live');
            }
        } catch {
            if (this.#state !== 'ended') {
                this.#setState('lost');
            }
        }
        this.#asking = false;
    }

    /** A hidden page gives its connection back, since a browser has only six; it resumes when it is looked at. */
    #onVisibility = () => {
        clearTimeout(this.#hiddenTimer);
        if (document.hidden) {
            this.#hiddenTimer = setTimeout(() => this.#pause(), closeHiddenAfter);
        } else if (!this.#connection && this.#state !== 'ended') {
            this.#retry = shortestRetry;
            this.#connect();
        }
    };

    #pause() {
        const connection = this.#connection;
        this.#connection = null;
        clearTimeout(this.#retryTimer);
        connection?.abort();
        this.#setState('lost');
    }
}

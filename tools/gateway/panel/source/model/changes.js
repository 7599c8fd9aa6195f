// Changes made here: one at a time for each property, the latest value next, and what has become of each.
import { pathOf, problemText, request } from '../api/client.js';
import { t } from '../text/text.js';
import { valueText } from '../text/values.js';
import { findProperty } from './properties.js';

/** @typedef {import('../types').Value} Value */
/** @typedef {import('../types').Attempt} Attempt */
/** @typedef {{property: string, old: Value, value: Value, gesture: number}} Done */

const keptUndo = 50;
const shownFor = { confirmed: 2500, adjusted: 12000, refused: 12000, failed: 12000, pending: 0 };

export class Changes {
    /** @type {Map<string, Attempt>} */
    #attempts = new Map();
    /** @type {Map<string, {value: Value | null, gesture: number, isUndo: boolean}>} */
    #waiting = new Map();
    /** @type {Map<string, Done[]>} */
    #done = new Map();
    /** @type {(device: string) => void} */
    #onChange;
    #gesture = 0;

    /** @param {(device: string) => void} onChange */
    constructor(onChange) {
        this.#onChange = onChange;
    }

    /** Values of one gesture, such as a slider's, are undone together. */
    newGesture() {
        return ++this.#gesture;
    }

    /** @param {string} device @param {string} property */
    attempt(device, property) {
        return this.#attempts.get(`${device} ${property}`);
    }

    /** @param {string} device */
    lastDone(device) {
        return this.#done.get(device)?.at(-1);
    }

    /** @param {string} device @param {string} property @param {Value | null} value @param {number} [gesture] */
    set(device, property, value, gesture = this.newGesture()) {
        return this.#queue(device, property, { value, gesture, isUndo: false });
    }

    /** @param {string} device */
    undo(device) {
        const last = this.#done.get(device)?.pop();
        if (last) {
            this.#queue(device, last.property, { value: last.old, gesture: this.newGesture(), isUndo: true });
        }
        return last;
    }

    /** @param {string} device @param {string} property @param {{value: Value | null, gesture: number, isUndo: boolean}} wanted */
    async #queue(device, property, wanted) {
        const key = `${device} ${property}`;
        if (this.#attempts.get(key)?.state === 'pending') {
            this.#waiting.set(key, wanted);
            return;
        }
        this.#show(device, key, { state: 'pending', value: wanted.value, text: t('attempt.pending') });
        const path = `${pathOf('devices', device, 'properties', property)}?wait=confirmed&deadline=5s`;
        const answer = await request('PUT', path, wanted.value === null ? {} : { value: wanted.value });
        this.#note(device, property, wanted, answer);
        this.#show(device, key, attemptFrom(property, wanted.value, answer));
        const next = this.#waiting.get(key);
        this.#waiting.delete(key);
        if (next) {
            await this.#queue(device, property, next);
        }
    }

    /** @param {string} device @param {string} key @param {Attempt} attempt */
    #show(device, key, attempt) {
        this.#attempts.set(key, attempt);
        this.#onChange(device);
        const pause = shownFor[attempt.state];
        if (pause > 0) {
            setTimeout(() => {
                if (this.#attempts.get(key) === attempt) {
                    this.#attempts.delete(key);
                    this.#onChange(device);
                }
            }, pause);
        }
    }

    /**
     * @param {string} device @param {string} property
     * @param {{value: Value | null, gesture: number, isUndo: boolean}} wanted
     * @param {import('../api/client.js').Answer} answer
     */
    #note(device, property, wanted, answer) {
        const { outcome, old, value } = answer.body ?? {};
        const hasChanged = outcome === 'confirmed' || outcome === 'adjusted';
        if (!hasChanged || wanted.isUndo || old === undefined || old === null || old === value) {
            return;
        }
        const done = this.#done.get(device) ?? [];
        const last = done.at(-1);
        if (last?.property === property && last.gesture === wanted.gesture) {
            last.value = value;
        } else {
            done.push({ property, old, value, gesture: wanted.gesture });
        }
        this.#done.set(device, done.slice(-keptUndo));
    }
}

/**
 * @param {string} name @param {Value | null} wanted @param {import('../api/client.js').Answer} answer
 * @returns {Attempt}
 */
function attemptFrom(name, wanted, answer) {
    const property = findProperty(name);
    const body = answer.body ?? {};
    const value = body.value ?? wanted;
    if (answer.ok) {
        return { state: 'confirmed', value, text: t('attempt.confirmed') };
    }
    if (body.outcome === 'adjusted') {
        return { state: 'adjusted', value, text: t('attempt.adjusted', { value: valueText(value, property), wanted: valueText(wanted, property) }) };
    }
    if (body.outcome === 'unconfirmed') {
        return { state: 'failed', value, text: t('attempt.unconfirmed') };
    }
    const nearest = Array.isArray(body.nearest) ? body.nearest[0] : body.nearest;
    const hint = nearest === undefined || nearest === null ? '' : t('attempt.nearest', { value: valueText(nearest, property) });
    const state = answer.status === 409 || answer.status === 422 ? 'refused' : 'failed';
    const text = state === 'refused' ? t('attempt.refused', { wanted: valueText(wanted, property) }) : problemText(answer, t('attempt.unreachable'));
    return { state, value, text: text + hint };
}

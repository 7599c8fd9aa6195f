import { emptySummary, summaryParts } from './summary.js';

/** @typedef {import('../types').Device} Device */
/** @typedef {import('../types').PropertyState} PropertyState */
/** @typedef {import('../types').Value} Value */

/** One device: its description, and the values and offers that are known of its properties. */
export class DeviceModel {
    /** @type {Device} */
    device;
    /** @type {Map<string, Value | null>} */
    values = new Map();
    /** What is known beyond the value; filled when somebody looks at the device. @type {Map<string, PropertyState>} */
    details = new Map();
    /** What the device offers now, as far as somebody has asked. @type {Map<string, import('../types').Offer>} */
    offers = new Map();

    /** @param {Device} device */
    constructor(device) {
        this.device = device;
    }

    /** @param {Device} device */
    describe(device) {
        const { name, label, address, room, tags, enabled } = device;
        this.device = device.revision < this.device.revision
            ? { ...this.device, name, label, address, room, tags, enabled }
            : { ...device, summary: device.summary ?? emptySummary(), alarms: device.alarms ?? [] };
    }

    get isConnected() {
        return this.device.link.state === 'connected';
    }

    /** @param {string} property @returns {Value | null} null unless the device reports it now */
    value(property) {
        return this.isConnected ? this.values.get(property) ?? null : null;
    }

    /** @param {Record<string, PropertyState>} properties */
    learn(properties) {
        for (const [name, state] of Object.entries(properties)) {
            this.details.set(name, state);
            this.values.set(name, state.value ?? null);
            if (state.offer !== undefined) {
                this.offers.set(name, state.offer);
            }
        }
    }

    /** @param {string} type @param {any} data */
    take(type, data) {
        if (type === 'change') {
            this.#takeChange(data);
        } else if (type === 'snapshot') {
            this.values = new Map(Object.entries(data.values ?? {}));
            this.#takeLink(data);
        } else if (type === 'link') {
            this.#takeLink(data);
        } else if (type === 'offers') {
            data.properties.forEach((/** @type {string} */ name) => this.offers.delete(name));
        }
    }

    /** @param {any} data */
    #takeLink(data) {
        const { link, summary, alarms, revision } = data;
        this.device = { ...this.device, link, summary: summary ?? emptySummary(), alarms: alarms ?? [],
            revision: revision ?? this.device.revision };
        if (!this.isConnected) {
            this.values.clear();
            this.offers.clear();
        }
    }

    /** @param {any} data */
    #takeChange(data) {
        const summary = { ...this.device.summary };
        let last = this.device.lastChange;
        for (const [property, change] of Object.entries(data.changes)) {
            this.values.set(property, change.value);
            const part = summaryParts[property];
            if (part) {
                summary[part] = change.value;
            }
            const { old, origin, who } = change;
            last = { time: data.time, property, old, new: change.value, origin, who };
            this.#note(property, last);
        }
        this.device = { ...this.device, summary, lastChange: last, revision: data.revision };
    }

    /** @param {string} property @param {import('../types').Change} change */
    #note(property, change) {
        const known = this.details.get(property);
        if (known) {
            this.details.set(property, { ...known, value: change.new, live: true, changed: change.time,
                origin: change.origin, who: change.who });
        }
    }
}

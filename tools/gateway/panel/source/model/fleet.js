// The devices as the gateway last described them. Views read from here and are notified of what has changed.
import { drawSoon } from '../dom/schedule.js';
import { DeviceModel } from './device_model.js';

/** @typedef {import('../types').Device} Device */
/** @typedef {(changed: Set<string>) => void} FleetListener */

/** In a set of changed names: the list of devices itself. */
export const fleetItself = '*';

const order = new Intl.Collator('en', { numeric: true });

export class Fleet {
    /** @type {Map<string, DeviceModel>} */
    #devices = new Map();
    /** @type {DeviceModel[]} */
    #inOrder = [];
    /** @type {Set<FleetListener>} */
    #listeners = new Set();
    #touch = drawSoon((names) => this.#notify(names));

    /** @param {Device[]} devices all there are */
    replace(devices) {
        const before = this.#devices;
        this.#devices = new Map();
        for (const device of devices) {
            const model = before.get(device.name) ?? new DeviceModel(device);
            model.describe(device);
            this.#devices.set(device.name, model);
            this.#touch(device.name);
        }
        this.#inOrder = [...this.#devices.values()].sort((a, b) =>
            order.compare(a.device.room, b.device.room) || order.compare(a.device.label, b.device.label));
        this.#touch(fleetItself);
    }

    /** In the order in which people look for them. */
    get devices() {
        return this.#inOrder;
    }

    /** @param {string} name */
    find(name) {
        return this.#devices.get(name);
    }

    /** @param {FleetListener} listener @returns {() => void} ends it */
    listen(listener) {
        this.#listeners.add(listener);
        return () => this.#listeners.delete(listener);
    }

    /** @param {string} type @param {any} data @returns {boolean} whether the list of devices has to be read again */
    take(type, data) {
        const model = data.device ? this.#devices.get(data.device) : undefined;
        if (!model) {
            return type === 'devices' || (type === 'snapshot' && Boolean(data.device));
        }
        model.take(type, data);
        this.#touch(data.device);
        return false;
    }

    /** @param {string} name */
    touch(name) {
        this.#touch(name);
    }

    /** @param {Set<string>} names */
    #notify(names) {
        for (const listener of [...this.#listeners]) {
            listener(names);
        }
    }
}

// Keeps the details of the device that somebody looks at: ages, who changed what, and, for the properties on the page,
// what the device offers.
import { get, pathOf } from '../api/client.js';
import { fleet } from '../model/application.js';

const atATime = 3;

export class DeviceLoader {
    #name;
    /** @type {Set<string>} */
    #asked = new Set();
    /** @type {Set<string>} */
    #running = new Set();

    /** @param {string} name */
    constructor(name) {
        this.#name = name;
    }

    /** @returns {Promise<boolean>} false if there is no such device */
    async loadAll() {
        const answer = await get(pathOf('devices', this.#name));
        if (answer.ok) {
            fleet.find(this.#name)?.learn(answer.body.properties ?? {});
            fleet.touch(this.#name);
        }
        return answer.status !== 404;
    }

    /** Asks for the offers that are not known, or not any more. @param {import('../types').Property[]} properties */
    wantOffers(properties) {
        const model = fleet.find(this.#name);
        if (model?.isConnected) {
            properties.filter((property) => property.offer && !model.offers.has(property.name) && !this.#running.has(property.name)).forEach((property) => this.#asked.add(property.name));
            this.#runNext();
        }
    }

    #runNext() {
        const [next] = this.#asked;
        if (next !== undefined && this.#running.size < atATime) {
            this.#asked.delete(next);
            this.#ask(next);
            this.#runNext();
        }
    }

    /** @param {string} property */
    async #ask(property) {
        this.#running.add(property);
        const answer = await get(pathOf('devices', this.#name, 'properties', property));
        this.#running.delete(property);
        const model = fleet.find(this.#name);
        if (answer.status !== 0 && model?.isConnected) {
            model.offers.set(property, answer.body?.offer ?? null);
            fleet.touch(this.#name);
        }
        this.#runNext();
    }

    stop() {
        this.#asked.clear();
    }
}

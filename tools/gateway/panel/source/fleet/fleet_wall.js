import { make } from '../dom/element.js';
import { WallTile } from './wall_tile.js';

/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */

const shape = 1.7; // width of a tile for its height, at least
const gap = 6;
const leastWidth = 150;

/** The fleet on a wall monitor: every device has its place, and the tiles are as large as the screen allows. */
export class FleetWall {
    element = make('div', { class: 'fleet-wall' });
    /** @type {Map<string, WallTile>} */
    #tiles = new Map();
    #observer = new ResizeObserver(() => this.#arrange());

    constructor() {
        this.#observer.observe(this.element);
    }

    /** @param {DeviceModel[]} models */
    show(models) {
        const before = this.#tiles;
        this.#tiles = new Map(models.map((model) => [model.device.name, before.get(model.device.name) ?? new WallTile()]));
        models.forEach((model) => this.update(model));
        this.element.replaceChildren(...[...this.#tiles.values()].map((tile) => tile.element));
        this.#arrange();
    }

    /** @param {DeviceModel} model */
    update(model) {
        this.#tiles.get(model.device.name)?.update(model);
    }

    #arrange() {
        const { width } = this.element.getBoundingClientRect();
        const height = innerHeight - this.element.getBoundingClientRect().top - 2 * gap;
        const columns = bestColumns(this.#tiles.size, width, height);
        const rows = Math.ceil(this.#tiles.size / columns);
        this.element.style.setProperty('--columns', String(columns));
        this.element.style.setProperty('--tile-height', `${tileHeight(width / columns, height / rows - gap)}px`);
    }
}

const mostShape = 3;

/** As high as the screen allows, but neither a tower nor a strip. @param {number} width @param {number} room */
const tileHeight = (width, room) => Math.max(width / mostShape, Math.min(room, width / shape));

/** The fewest columns with which all tiles fit. @param {number} count @param {number} width @param {number} height */
export function bestColumns(count, width, height) {
    const most = Math.max(1, Math.floor(width / leastWidth));
    for (let columns = 1; columns < most; columns++) {
        const rows = Math.ceil(count / columns);
        if (rows * ((width / columns) / mostShape + gap) <= height) {
            return columns;
        }
    }
    return most;
}

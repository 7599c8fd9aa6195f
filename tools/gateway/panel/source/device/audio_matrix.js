import { changes } from '../model/application.js';
import { wordLabel } from '../text/labels.js';
import { t } from '../text/text.js';
import { make, setAttribute, setText } from '../dom/element.js';
import { AttemptMark } from './attempt_mark.js';
import { whyNot } from './property_row.js';

/** @typedef {import('../types').Property} Property */
/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */

/** Sources down, channels across: one crosspoint in every column. */
export class AudioMatrix {
    #properties;
    #shape = '';
    #table = make('table', { class: 'matrix', role: 'grid' });
    #attempts = new AttemptMark();
    /** @type {HTMLButtonElement[][]} a row of buttons for each source */
    #points = [];
    /** @type {string[]} */
    #sources = [];
    element;

    /** @param {Property[]} properties one for each channel @param {string} title */
    constructor(properties, title) {
        this.#properties = properties;
        this.#table.setAttribute('aria-label', title);
        this.element = make('div', { class: 'matrix-holder' }, make('div', { class: 'scroll' }, this.#table), this.#attempts.element);
        this.#table.addEventListener('keydown', (event) => this.#moveFocus(event));
    }

    /** @param {DeviceModel} model */
    update(model) {
        this.#shapeTable(model);
        const why = whyNot(model, this.#properties[0]);
        this.#properties.forEach((property, column) => this.#updateColumn(model, property, column, why));
        this.#attempts.show(this.#properties.map((property) => changes.attempt(model.device.name, property.name)).find(Boolean));
    }

    /** @param {DeviceModel} model @param {Property} property @param {number} column @param {string} why */
    #updateColumn(model, property, column, why) {
        const now = model.value(property.name);
        const attempt = changes.attempt(model.device.name, property.name);
        this.#sources.forEach((source, row) => {
            const button = this.#points[row][column];
            const isHere = source === now;
            setAttribute(button, 'aria-pressed', String(isHere));
            setAttribute(button, 'data-attempt', attempt && attempt.value === source ? attempt.state : null);
            setAttribute(button, 'aria-disabled', why ? 'true' : null);
            setAttribute(button, 'title', why || t('matrix.point', { source: wordLabel(source), channel: column + 1 }));
            setText(button, isHere ? '\u25cf' : '');
        });
    }

    /** @param {DeviceModel} model */
    #shapeTable(model) {
        const offers = this.#properties.map((property) => model.offers.get(property.name) ?? property.words ?? []);
        const sources = [...new Set(offers.flatMap((offer) => Array.isArray(offer) ? offer : []))];
        const shape = sources.join();
        if (shape === this.#shape) {
            return;
        }
        this.#shape = shape;
        this.#sources = sources;
        this.#points = sources.map((source) => this.#properties.map((property, column) => this.#makePoint(model, property, source, column)));
        const head = make('thead', {}, make('tr', {}, make('td'), ...this.#properties.map((_, column) => make('th', { scope: 'col' }, String(column + 1)))));
        const rows = sources.map((source, row) => make('tr', {}, make('th', { scope: 'row' }, wordLabel(source)), ...this.#points[row].map((point) => make('td', { role: 'gridcell' }, point))));
        this.#table.replaceChildren(head, make('tbody', {}, ...rows));
        this.#points[0]?.[0]?.setAttribute('tabindex', '0');
    }

    /** @param {DeviceModel} model @param {Property} property @param {string} source @param {number} column */
    #makePoint(model, property, source, column) {
        const label = t('matrix.point', { source: wordLabel(source), channel: column + 1 });
        const button = make('button', { type: 'button', tabindex: '-1', 'aria-label': label });
        button.addEventListener('click', () => {
            if (!button.hasAttribute('aria-disabled')) {
                changes.set(model.device.name, property.name, source);
            }
        });
        return button;
    }

    /** @param {KeyboardEvent} event */
    #moveFocus(event) {
        const [down, right] = ({ ArrowDown: [1, 0], ArrowUp: [-1, 0], ArrowRight: [0, 1], ArrowLeft: [0, -1] })[event.key] ?? [0, 0];
        const row = this.#points.findIndex((points) => points.includes(/** @type {any} */ (document.activeElement)));
        if ((!down && !right) || row < 0) {
            return;
        }
        const column = this.#points[row].indexOf(/** @type {any} */ (document.activeElement));
        const next = this.#points[row + down]?.[column + right];
        event.preventDefault();
        if (next) {
            this.#points[row][column].tabIndex = -1;
            next.tabIndex = 0;
            next.focus();
        }
    }
}

import { t } from '../text/text.js';
import { make } from '../dom/element.js';
import { columns, DeviceRow } from './device_row.js';

/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */

/** The fleet as a table, room by room. */
export class FleetList {
    #table = make('table', { class: 'fleet-table' });
    element = make('div', { class: 'scroll' }, this.#table);
    /** @type {Map<string, DeviceRow>} */
    #rows = new Map();

    constructor() {
        this.element.addEventListener('keydown', (event) => this.#moveFocus(event));
        this.element.addEventListener('click', (event) => openRow(event));
    }

    /** @param {DeviceModel[]} models */
    show(models) {
        const head = make('thead', {}, make('tr', {}, ...columns.map((column) => make('th', { scope: 'col', class: `column-${column}` }, t(`column.${column}`)))));
        const before = this.#rows;
        this.#rows = new Map(models.map((model) => [model.device.name, before.get(model.device.name) ?? new DeviceRow()]));
        models.forEach((model) => this.update(model));
        this.#table.replaceChildren(head, ...this.#makeRooms(models));
    }

    /** @param {DeviceModel} model */
    update(model) {
        this.#rows.get(model.device.name)?.update(model);
    }

    /** @param {DeviceModel[]} models */
    #makeRooms(models) {
        const rooms = new Map();
        for (const model of models) {
            const room = model.device.room;
            rooms.set(room, [...rooms.get(room) ?? [], this.#rows.get(model.device.name)?.element]);
        }
        return [...rooms].map(([room, rows]) => make('tbody', {},
            make('tr', { class: 'room' }, make('th', { colspan: String(columns.length), scope: 'rowgroup' }, room || t('room.none'),
                make('span', { class: 'note' }, String(rows.length)))), ...rows));
    }

    /** @param {KeyboardEvent} event */
    #moveFocus(event) {
        const step = event.key === 'ArrowDown' ? 1 : event.key === 'ArrowUp' ? -1 : 0;
        if (step === 0) {
            return;
        }
        const links = /** @type {HTMLElement[]} */ ([...this.element.querySelectorAll('.device-name')]);
        const next = links[links.indexOf(/** @type {HTMLElement} */ (document.activeElement)) + step];
        if (next) {
            event.preventDefault();
            next.focus();
        }
    }
}

/** @param {MouseEvent} event */
function openRow(event) {
    const target = /** @type {Element} */ (event.target);
    if (!target.closest('a')) {
        /** @type {HTMLElement | null | undefined} */ (target.closest('.device-row')?.querySelector('.device-name'))?.click();
    }
}

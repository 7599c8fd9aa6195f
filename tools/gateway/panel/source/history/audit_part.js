import { problemText } from '../api/client.js';
import { fleet } from '../model/application.js';
import { may } from '../model/person.js';
import { findProperty } from '../model/properties.js';
import { propertyLabel } from '../text/labels.js';
import { t, tWord } from '../text/text.js';
import { exactTimeText } from '../text/times.js';
import { valueText } from '../text/values.js';
import { make, makeSelect, replaceChildren } from '../dom/element.js';
import { makeExportLinks } from './export_links.js';
import { periodQuery, readRows } from './history_query.js';
import { PeriodBar } from './period_bar.js';

/** @typedef {import('../types').AuditRow} AuditRow */

const columns = ['time', 'who', 'address', 'device', 'property', 'value', 'outcome'];

/** Every attempt to change something: who, from where, what, and what became of it. */
export class AuditPart {
    #period = new PeriodBar(() => this.#load());
    #device = makeSelect([['', t('audit.all-devices')], ...fleet.devices.map(({ device }) => /** @type {[string, string]} */ ([device.name, device.label || device.name]))], '', { 'aria-label': t('history.device') });
    #words = make('input', { type: 'search', placeholder: t('audit.search'), 'aria-label': t('audit.search') });
    #refused = make('input', { type: 'checkbox' });
    #exports = make('span');
    #table = make('div');
    /** @type {AuditRow[]} */
    #rows = [];
    element = make('div', {}, make('div', { class: 'toolbar' }, this.#device, this.#words, make('label', { class: 'check' }, this.#refused, t('audit.refused')), make('span', { class: 'space' }), this.#exports), this.#period.element, this.#table);

    constructor() {
        this.#device.addEventListener('change', () => this.#load());
        this.#words.addEventListener('input', () => this.#show());
        this.#refused.addEventListener('change', () => this.#show());
        this.#load();
    }

    stop() {}

    async #load() {
        const filter = { device: this.#device.value };
        replaceChildren(this.#exports, makeExportLinks('audit', { ...filter, ...periodQuery(this.#period.period) }));
        if (!may('seeAudit')) {
            replaceChildren(this.#table, make('p', { class: 'note' }, t('may.needs', { role: t('role.engineer') })));
            return;
        }
        const { rows, problem } = await readRows('audit', filter, this.#period.period);
        this.#rows = rows.reverse();
        this.#show();
        if (problem) {
            this.#table.prepend(make('p', { class: 'tone-alarm' }, problemText(problem, t('attempt.unreachable'))));
        }
    }

    #show() {
        const words = this.#words.value.toLowerCase();
        const shown = this.#rows.filter((row) => (!this.#refused.checked || row.status >= 400) && Object.values(row).join(' ').toLowerCase().includes(words));
        const heads = columns.map((name) => make('th', { scope: 'col' }, t(/** @type {any} */ (`history.${name}`))));
        replaceChildren(this.#table, make('div', { class: 'scroll' }, make('table', { class: 'lines' }, make('thead', {}, make('tr', {}, ...heads)), make('tbody', {}, ...shown.map(makeRow)))),
            shown.length === 0 ? make('p', { class: 'note' }, t('audit.none')) : null);
    }
}

/** @param {AuditRow} row */
function makeRow(row) {
    const property = findProperty(row.property);
    return make('tr', { 'data-tone': row.status >= 400 ? 'alarm' : null }, make('td', { class: 'time' }, exactTimeText(row.time)), make('td', {}, row.who || t('person.open')), make('td', {}, row.address),
        make('td', {}, fleet.find(row.device)?.device.label ?? row.device), make('td', { title: row.property }, row.property ? propertyLabel(row.property) : ''), make('td', { class: 'cut', title: valueText(row.value, property) }, valueText(row.value, property)),
        make('td', {}, `${tWord('outcome', row.outcome)} (${row.status})`));
}

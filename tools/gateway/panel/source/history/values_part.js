import { problemText } from '../api/client.js';
import { fleet } from '../model/application.js';
import { allProperties } from '../model/properties.js';
import { recall, remember } from '../model/preferences.js';
import { propertyLabel } from '../text/labels.js';
import { t } from '../text/text.js';
import { make, makeSelect, replaceChildren } from '../dom/element.js';
import { makeExportLinks } from './export_links.js';
import { periodQuery, readRows } from './history_query.js';
import { Lane } from './lane.js';
import { gutter } from './layout.js';
import { PeriodBar } from './period_bar.js';
import { makeRowsTable } from './rows_table.js';
import { makeTimeAxis } from './time_axis.js';
import { makeWhoStrip } from './who_strip.js';
import { listenForZoom } from './zoom.js';

const usual = ['input.video-mode', 'output.video-mode', 'input.signal-present', 'proc-amp.gain'];
const pause = 800;

/** Values over time, and who changed them. */
export class ValuesPart {
    #device;
    /** @type {string[]} */
    #properties;
    /** @type {Lane[]} */
    #lanes = [];
    #period = new PeriodBar(() => this.#load());
    #choices = make('div', { class: 'toolbar' });
    #plots = make('div', { class: 'lanes' });
    #table = make('div');
    #timer = 0;
    #request = 0;
    #stopListening = fleet.listen((names) => this.#onChange(names));
    element = make('div', {}, this.#choices, this.#period.element, make('section', { class: 'card', 'aria-label': t('history.values') }, this.#plots), this.#table);

    /** @param {string | null} device @param {string | null} property */
    constructor(device, property) {
        this.#device = device ?? recall('history.device', fleet.devices[0]?.device.name ?? '');
        this.#properties = property ? [property] : recall('history.properties', usual);
        listenForZoom(this.#plots, (from, to) => this.#period.zoom(from, to));
        this.#show();
    }

    stop() {
        this.#stopListening();
        clearTimeout(this.#timer);
        this.#lanes.forEach((lane) => lane.destroy());
    }

    /** @param {Set<string>} names */
    #onChange(names) {
        if (names.has(this.#device) && this.#period.isNow) {
            this.#timer ||= setTimeout(() => this.#load(), pause);
        }
    }

    #show() {
        remember('history.device', this.#device);
        remember('history.properties', this.#properties);
        this.#lanes.forEach((lane) => lane.destroy());
        this.#lanes = this.#properties.map((property) => new Lane(this.#device, property, () => this.#choose(this.#properties.filter((other) => other !== property))));
        this.#showChoices();
        this.#load();
    }

    /** @param {string[]} properties */
    #choose(properties) {
        this.#properties = properties;
        this.#show();
    }

    #showChoices() {
        const devices = makeSelect(fleet.devices.map(({ device }) => [device.name, device.label || device.name]), this.#device, { 'aria-label': t('history.device') });
        devices.addEventListener('change', () => {
            this.#device = devices.value;
            this.#show();
        });
        const rest = allProperties().filter((property) => property.access !== 'command' && !this.#properties.includes(property.name));
        const add = makeSelect([['', t('history.add')], ...rest.map((property) => /** @type {[string, string]} */ ([property.name, `${propertyLabel(property.name)} (${property.name})`]))], '', { 'aria-label': t('history.add') });
        add.addEventListener('change', () => this.#choose([...this.#properties, add.value]));
        replaceChildren(this.#choices, devices, add, make('span', { class: 'space' }),
            makeExportLinks('history', { device: this.#device, ...(this.#properties.length === 1 ? { property: this.#properties[0] } : {}), ...periodQuery(this.#period.period) }));
    }

    async #load() {
        const request = ++this.#request;
        const { period, isNow } = this.#period;
        const filter = { device: this.#device, ...(this.#properties.length === 1 ? { property: this.#properties[0] } : {}) };
        const { rows, isComplete, problem } = await readRows('history', filter, period);
        clearTimeout(this.#timer);
        this.#timer = 0;
        if (request === this.#request) {
            const shown = rows.filter((row) => this.#properties.includes(row.property));
            await this.#draw(shown, period, isNow);
            replaceChildren(this.#table, problem ? make('p', { class: 'tone-alarm' }, problemText(problem, t('attempt.unreachable'))) : null,
                isComplete || problem ? null : make('p', { class: 'note' }, t('history.cut')), makeRowsTable(shown));
        }
    }

    /** @param {import('../types').HistoryRow[]} rows @param {import('./history_query.js').Period} period @param {boolean} isNow */
    async #draw(rows, period, isNow) {
        const axis = makeTimeAxis(period, this.#plots.clientWidth - gutter);
        replaceChildren(this.#plots, makeWhoStrip(rows, period), ...this.#lanes.map((lane) => lane.element), axis);
        await Promise.all(this.#lanes.map((lane) => lane.draw(rows, period, isNow)));
    }
}

import { fleet } from '../model/application.js';
import { findProperty, isNumeric } from '../model/properties.js';
import { propertyLabel } from '../text/labels.js';
import { t } from '../text/text.js';
import { make } from '../dom/element.js';
import { makeIcon } from '../dom/icons.js';
import { Curve } from './curve.js';
import { readValueBefore } from './history_query.js';
import { stretchesOf } from './series.js';
import { StateBar } from './state_bar.js';

/** One property of the device over time: a curve for numbers, bars for words. */
export class Lane {
    #device;
    #property;
    #curve = new Curve();
    #bar = new StateBar();
    #plot = make('div', { class: 'lane-plot' });
    element;

    /** @param {string} device @param {string} property @param {() => void} remove */
    constructor(device, property, remove) {
        this.#device = device;
        this.#property = property;
        const label = propertyLabel(property);
        const close = make('button', { class: 'quiet', 'aria-label': t('history.remove', { label }), onclick: remove }, makeIcon('cross'));
        this.element = make('div', { class: 'lane' }, make('div', { class: 'lane-name' }, make('span', {}, label), make('span', { class: 'note' }, property), close), this.#plot);
    }

    /** @param {import('../types').HistoryRow[]} rows @param {import('./history_query.js').Period} period @param {boolean} isNow */
    async draw(rows, period, isNow) {
        const own = rows.filter((row) => row.property === this.#property);
        const stretches = stretchesOf(own, period, own.length ? null : await this.#valueDuring(period, isNow));
        if (isNumeric(findProperty(this.#property))) {
            this.#plot.replaceChildren(this.#curve.element);
            if (await this.#curve.draw(stretches, period)) {
                return;
            }
            this.#plot.title = t('history.no-plot');
        }
        this.#bar.draw(stretches, period);
        this.#plot.replaceChildren(this.#bar.element);
    }

    /** What was in force throughout a period without a change. @param {import('./history_query.js').Period} period @param {boolean} isNow */
    async #valueDuring(period, isNow) {
        return isNow ? fleet.find(this.#device)?.value(this.#property) ?? null : readValueBefore(this.#device, this.#property, period.from);
    }

    destroy() {
        this.#curve.destroy();
    }
}

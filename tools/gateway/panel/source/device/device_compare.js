import { pathOf, problemText, request } from '../api/client.js';
import { fleet } from '../model/application.js';
import { may } from '../model/person.js';
import { allProperties } from '../model/properties.js';
import { notify } from '../shell/notices.js';
import { go, linkTo } from '../shell/routes.js';
import { propertyLabel } from '../text/labels.js';
import { t } from '../text/text.js';
import { valueText } from '../text/values.js';
import { make, makeSelect, replaceChildren } from '../dom/element.js';
import { differencesOf } from './differences.js';
import { DeviceLoader } from './device_loader.js';

/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */

/** Never copied unless somebody ticks it: what makes a device itself. */
const ownSettings = /^(network|preset|files)\./;

/** Two devices side by side: only what differs, to copy from this one to the other. */
export class DeviceCompare {
    /** @type {import('../types').Property[]} whose offers it needs */
    properties = [];
    #name;
    #other;
    #result = make('div');
    #shown = '';
    element;

    /** @param {string} name @param {string} [other] */
    constructor(name, other) {
        this.#name = name;
        this.#other = other ?? '';
        const others = fleet.devices.filter((model) => model.device.name !== name)
            .map((model) => /** @type {[string, string]} */ ([model.device.name, model.device.label || model.device.name]));
        const select = makeSelect([['', t('compare.choose')], ...others], this.#other, { 'aria-label': t('compare.with') });
        select.addEventListener('change', () => this.#choose(select.value));
        this.element = make('section', { class: 'card', 'aria-label': t('group.compare') }, make('h3', {}, t('compare.with')), select, this.#result);
        this.#choose(this.#other);
    }

    /** @param {string} other */
    async #choose(other) {
        this.#other = other;
        this.#shown = '';
        this.#result.replaceChildren();
        if (other) {
            history.replaceState(null, '', linkTo('device', [this.#name, 'compare', other]));
            await new DeviceLoader(other).loadAll();
            this.#showDifferences();
        }
    }

    /** The names of the devices whose changes it shows. */
    get watched() {
        return [this.#other];
    }

    update() {
        this.#showDifferences();
    }

    #showDifferences() {
        const here = fleet.find(this.#name);
        const there = fleet.find(this.#other);
        if (!here || !there) {
            return;
        }
        const differences = differencesOf(allProperties(), (name) => here.value(name), (name) => there.value(name));
        const key = JSON.stringify(differences.map(({ property, here: a, there: b }) => [property.name, a, b]));
        if (key !== this.#shown) {
            this.#shown = key;
            replaceChildren(this.#result, differences.length ? this.#makeTable(differences, here, there) : make('p', { class: 'note' }, t('compare.same')));
        }
    }

    /** @param {import('./differences.js').Difference[]} differences @param {DeviceModel} here @param {DeviceModel} there */
    #makeTable(differences, here, there) {
        const boxes = differences.map(({ property, here: value }) => make('input', { type: 'checkbox', 'aria-label': propertyLabel(property.name), checked: value !== null && !ownSettings.test(property.name), disabled: value === null }));
        const rows = differences.map(({ property, here: a, there: b }, index) => make('tr', {}, make('td', {}, boxes[index]),
            make('th', { scope: 'row' }, propertyLabel(property.name), make('span', { class: 'note' }, property.name)), make('td', {}, valueText(a, property)), make('td', {}, valueText(b, property))));
        const copy = make('button', { class: 'primary', disabled: !may('set', this.#other) || !there.isConnected }, t('compare.copy', { device: there.device.label }));
        copy.addEventListener('click', () => this.#copy(differences.filter((_, index) => boxes[index].checked)));
        const head = ['compare.take', 'compare.property'].map((key) => t(/** @type {any} */ (key)));
        return make('div', {}, make('div', { class: 'toolbar' }, copy, make('button', { onclick: () => go(linkTo('device', [this.#other, 'compare', this.#name])) }, t('compare.swap'))),
            make('div', { class: 'scroll' }, make('table', { class: 'lines' }, make('thead', {}, make('tr', {}, ...[...head, here.device.label, there.device.label].map((text) => make('th', { scope: 'col' }, text)))), make('tbody', {}, ...rows))));
    }

    /** @param {import('./differences.js').Difference[]} chosen */
    async #copy(chosen) {
        const values = Object.fromEntries(chosen.map(({ property, here }) => [property.name, here]));
        const answer = await request('PATCH', `${pathOf('devices', this.#other, 'properties')}?wait=confirmed`, { values });
        const results = Object.entries(answer.body?.results ?? {});
        const refused = results.filter(([, result]) => result.status >= 400).map(([name]) => propertyLabel(name));
        if (answer.ok || results.length > 0) {
            notify(refused.length ? t('compare.partly', { count: results.length - refused.length, refused: refused.join(', ') }) : t('compare.copied', { count: results.length }), refused.length ? 'alarm' : 'ok');
        } else {
            notify(problemText(answer, t('attempt.unreachable')), 'alarm');
        }
    }
}

import { changes } from '../model/application.js';
import { confirmAction } from '../dom/dialog.js';
import { make, setAttribute } from '../dom/element.js';
import { findProperty } from '../model/properties.js';
import { t } from '../text/text.js';
import { AttemptMark } from './attempt_mark.js';
import { makeControl } from './control.js';
import { whyNot } from './property_row.js';

/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */

/** The presets by number and name, each to recall, to overwrite and to rename. */
export class PresetList {
    #body = make('tbody');
    #attempts = new AttemptMark();
    #shape = '';
    element = make('div', {}, make('table', { class: 'presets' }, make('thead', {}, make('tr', {},
        make('th', { scope: 'col' }, t('preset.number')), make('th', { scope: 'col' }, t('preset.name')), make('th', { scope: 'col' }, t('preset.actions')))), this.#body), this.#attempts.element);
    /** @type {((model: DeviceModel) => void)[]} */
    #updates = [];

    /** @param {DeviceModel} model */
    update(model) {
        const shape = `${offered(model, 'preset.recall')} ${offered(model, 'preset.save')}`;
        if (shape !== this.#shape) {
            this.#shape = shape;
            this.#build(model);
        }
        this.#updates.forEach((update) => update(model));
        const name = model.device.name;
        this.#attempts.show(changes.attempt(name, 'preset.recall') ?? changes.attempt(name, 'preset.save'));
    }

    /** @param {DeviceModel} model */
    #build(model) {
        this.#updates = [];
        const count = Math.max(offered(model, 'preset.recall'), offered(model, 'preset.save'));
        this.#body.replaceChildren(...Array.from({ length: count }, (_, index) => this.#makeRow(model, index + 1)));
    }

    /** @param {DeviceModel} model @param {number} number */
    #makeRow(model, number) {
        const actions = ['preset.recall', 'preset.save'].map((command) => number <= offered(model, command) ? this.#makeButton(model, command, number) : null);
        return make('tr', {}, make('th', { scope: 'row' }, String(number)), make('td', {}, this.#makeName(model, number)), make('td', { class: 'actions' }, ...actions));
    }

    /** @param {DeviceModel} model @param {number} number */
    #makeName(model, number) {
        const property = findProperty(`preset.name.${number}`);
        if (!property) {
            return make('span', { class: 'note' }, t('preset.nameless'));
        }
        const device = model.device.name;
        const control = makeControl({ property, offer: null, label: t('preset.name-of', { number }), newGesture: () => changes.newGesture(),
            send: (value) => changes.set(device, property.name, value) });
        this.#updates.push((now) => {
            control.show(now.value(property.name));
            control.enable(!whyNot(now, property), whyNot(now, property));
        });
        return control.element;
    }

    /** @param {DeviceModel} model @param {string} command @param {number} number */
    #makeButton(model, command, number) {
        const action = t(command === 'preset.recall' ? 'preset.recall' : 'preset.save');
        const nameOf = (/** @type {DeviceModel} */ now) => String(now.value(`preset.name.${number}`) ?? number);
        const button = make('button', { type: 'button' }, action);
        button.addEventListener('click', async () => {
            const question = t(command === 'preset.recall' ? 'preset.recall.sure' : 'preset.save.sure', { preset: nameOf(model), number });
            if (await confirmAction(question, action)) {
                changes.set(model.device.name, command, number);
            }
        });
        this.#updates.push((now) => {
            const why = whyNot(now, /** @type {any} */ (findProperty(command)));
            setAttribute(button, 'aria-label', `${action} ${nameOf(now)}`);
            button.disabled = Boolean(why);
            button.title = why;
        });
        return button;
    }
}

/** The largest number that the device accepts. @param {DeviceModel} model @param {string} command */
function offered(model, command) {
    const offer = model.offers.get(command);
    return offer && !Array.isArray(offer) ? offer.max : 0;
}

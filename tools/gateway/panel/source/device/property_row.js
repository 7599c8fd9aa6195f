import { changes } from '../model/application.js';
import { may } from '../model/person.js';
import { toggleFavourite } from '../model/preferences.js';
import { propertyLabel } from '../text/labels.js';
import { t, tWord } from '../text/text.js';
import { timeText } from '../text/times.js';
import { make, setAttribute, setText } from '../dom/element.js';
import { makeIcon } from '../dom/icons.js';
import { linkTo } from '../shell/routes.js';
import { AttemptMark } from './attempt_mark.js';
import { makeControl, shapeOf } from './control.js';

/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */

/** One property: its name, its control, what has become of a change, and who changed it last. */
export class PropertyRow {
    #property;
    #label;
    #holder = make('div', { class: 'control' });
    #attempt = new AttemptMark();
    #who = make('a', { class: 'note who' });
    #shape = '';
    /** @type {import('./control.js').Control | null} */
    #control = null;
    element;

    /** @param {import('../types').Property} property @param {boolean} isFavourite */
    constructor(property, isFavourite) {
        this.#property = property;
        this.#label = propertyLabel(property.name);
        const name = make('div', { class: 'property-name', title: property.summary }, makeStar(property.name, this.#label, isFavourite), make('span', {}, this.#label));
        this.element = make('div', { class: 'property-row', 'data-property': property.name }, name, this.#holder, this.#attempt.element, this.#who);
    }

    /** @param {DeviceModel} model */
    update(model) {
        const device = model.device.name;
        const detail = model.details.get(this.#property.name);
        this.#shapeControl(model, model.offers.get(this.#property.name));
        this.#control?.show(model.value(this.#property.name));
        const isAsking = this.#property.offer !== undefined && !model.offers.has(this.#property.name);
        const why = whyNot(model, this.#property) || (isAsking ? t('control.asking') : '');
        this.#control?.enable(!why, why);
        const attempt = changes.attempt(device, this.#property.name);
        this.#attempt.show(attempt);
        setAttribute(this.element, 'data-attempt', attempt?.state ?? null);
        setAttribute(this.element, 'data-live', model.isConnected ? null : 'no');
        this.#showWho(device, detail);
    }

    /** While an offer is being asked for again, the control stays as it is. @param {DeviceModel} model @param {import('../types').Offer | undefined} known */
    #shapeControl(model, known) {
        const offer = known ?? null;
        const shape = shapeOf(this.#property, offer);
        if (shape === this.#shape || (known === undefined && this.#control && model.isConnected)) {
            return;
        }
        const hadFocus = this.#holder.contains(document.activeElement);
        const name = model.device.name;
        this.#shape = shape;
        this.#control = makeControl({ property: this.#property, offer, label: this.#label, newGesture: () => changes.newGesture(),
            send: (value, gesture) => changes.set(name, this.#property.name, value, gesture) });
        this.#holder.replaceChildren(this.#control.element);
        if (hadFocus) {
            /** @type {HTMLElement | null} */ (this.#holder.querySelector('input, select, button'))?.focus();
        }
    }

    /** @param {string} device @param {import('../types').PropertyState} [detail] */
    #showWho(device, detail) {
        const text = detail?.changed ? t('changed', { time: timeText(detail.changed), who: detail.who || tWord('origin-short', detail.origin ?? '') }) : '';
        setText(this.#who, text);
        setAttribute(this.#who, 'href', text ? linkTo('history', [], { device, property: this.#property.name }) : null);
        setAttribute(this.#who, 'title', text ? t('changed.history') : null);
    }
}

/** Why a property cannot be set now; empty if it can. @param {DeviceModel} model @param {import('../types').Property} property */
export function whyNot(model, property) {
    if (!may('set', model.device.name, property.name)) {
        return t('may.not-here');
    }
    if (!model.isConnected) {
        return t('control.not-connected');
    }
    return model.device.summary.remoteLocked ? t('control.remote-locked') : '';
}

/** @param {string} property @param {string} label @param {boolean} isFavourite */
function makeStar(property, label, isFavourite) {
    const button = make('button', { class: 'star quiet', 'aria-pressed': String(isFavourite), 'aria-label': t('favourite', { label }), title: t('favourite', { label }) }, makeIcon('star'));
    button.addEventListener('click', () => setAttribute(button, 'aria-pressed', String(toggleFavourite(property))));
    return button;
}

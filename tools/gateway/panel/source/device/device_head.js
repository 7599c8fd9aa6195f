import { changes, fleet } from '../model/application.js';
import { may } from '../model/person.js';
import { findProperty } from '../model/properties.js';
import { conditionsOf } from '../fleet/conditions.js';
import { openDeviceDialog } from '../fleet/device_dialog.js';
import { markOf } from '../fleet/link_mark.js';
import { linkTo } from '../shell/routes.js';
import { propertyLabel } from '../text/labels.js';
import { t } from '../text/text.js';
import { timeText } from '../text/times.js';
import { valueText } from '../text/values.js';
import { make, replaceChildren, setAttribute, setText } from '../dom/element.js';
import { makeIcon, setIcon } from '../dom/icons.js';

/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */

/** The device's name, whether it is really there, what is wrong with it, and what can be done with all of it. */
export class DeviceHead {
    #name;
    #title = make('h1');
    #about = make('span', { class: 'note' });
    #icon = makeIcon('live');
    #link = make('span');
    #linkMark = make('span', { class: 'mark', role: 'status' }, this.#icon, this.#link);
    #formats = make('span', { class: 'formats' });
    #conditions = make('ul', { class: 'conditions', 'aria-label': t('column.alarms') });
    #undoText = make('span');
    #undo = make('button', { class: 'undo' }, makeIcon('undo'), this.#undoText);
    #edit;
    element;

    /** @param {string} name */
    constructor(name) {
        this.#name = name;
        this.#undo.addEventListener('click', () => changes.undo(name));
        this.#edit = make('button', { onclick: () => openDeviceDialog(fleet.find(name)?.device ?? null) }, t('device.edit'));
        const tools = make('div', { class: 'toolbar' }, this.#undo, make('a', { class: 'button', href: linkTo('history', [], { device: name }) }, t('view.history')),
            this.#edit);
        this.element = make('header', { class: 'device-head' }, make('div', { class: 'device-title' }, this.#title, this.#about),
            make('div', { class: 'device-state' }, this.#linkMark, this.#formats, this.#conditions), tools);
    }

    /** @param {DeviceModel} model */
    update(model) {
        const { device } = model;
        const mark = markOf(device.link);
        setText(this.#title, device.label || device.name);
        setText(this.#about, [device.name, device.model, device.address, device.room].filter(Boolean).join(' \u00b7 '));
        setIcon(this.#icon, mark.icon);
        setText(this.#link, mark.tone === 'ok' ? mark.text : t('device.link', { state: mark.text, sentence: device.link.sentence, time: timeText(device.link.since) }));
        setAttribute(this.#linkMark, 'class', `mark tone-${mark.tone}`);
        setText(this.#formats, model.isConnected ? t('tile.formats', { input: valueText(device.summary.input), output: valueText(device.summary.output) }) : '');
        this.#updateConditions(model);
        this.#updateUndo();
        this.#edit.disabled = !may('editFleet', device.name);
    }

    /** @param {DeviceModel} model */
    #updateConditions(model) {
        const texts = conditionsOf(model).filter((mark) => mark.icon !== markOf(model.device.link).icon);
        const key = texts.map((mark) => mark.text).join();
        if (this.#conditions.dataset.key !== key) {
            this.#conditions.dataset.key = key;
            replaceChildren(this.#conditions, ...texts.map((mark) => make('li', { class: `mark tone-${mark.tone}` }, makeIcon(mark.icon), make('span', {}, mark.text))));
        }
    }

    #updateUndo() {
        const last = changes.lastDone(this.#name);
        const property = last && findProperty(last.property);
        this.#undo.disabled = !last;
        setText(this.#undoText, last ? t('undo.named', { label: propertyLabel(last.property), value: valueText(last.old, property), now: valueText(last.value, property) }) : t('undo'));
        setAttribute(this.#undo, 'title', t('undo.key'));
    }
}

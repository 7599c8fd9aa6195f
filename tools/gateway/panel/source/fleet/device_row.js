import { findProperty } from '../model/properties.js';
import { linkTo } from '../shell/routes.js';
import { propertyLabel } from '../text/labels.js';
import { t, tWord } from '../text/text.js';
import { timeText } from '../text/times.js';
import { valueText } from '../text/values.js';
import { make, setAttribute, setText } from '../dom/element.js';
import { makeIcon, setIcon } from '../dom/icons.js';
import { conditionsOf, toneOf } from './conditions.js';
import { markOf } from './link_mark.js';

/** @typedef {import('../model/device_model.js').DeviceModel} DeviceModel */

export const columns = /** @type {const} */ (['link', 'device', 'input', 'signal', 'output', 'reference', 'locks', 'alarms', 'change', 'who']);

/** One device in the list. */
export class DeviceRow {
    element = make('tr', { class: 'device-row' });
    #link = makeMark();
    #name = make('a', { class: 'device-name' });
    #model = make('span', { class: 'note' });
    #input = make('span');
    #output = make('span');
    #signal = makeMark();
    #reference = makeMark();
    #locks = makeMark();
    #alarms = make('span');
    #change = make('span');
    #who = make('span');

    constructor() {
        const content = { link: this.#link.element, device: make('div', {}, this.#name, this.#model), input: this.#input,
            signal: this.#signal.element, output: this.#output, reference: this.#reference.element, locks: this.#locks.element,
            alarms: this.#alarms, change: this.#change, who: this.#who };
        for (const column of columns) {
            this.element.append(make(column === 'device' ? 'th' : 'td', { class: `column-${column}`, scope: column === 'device' ? 'row' : null,
                'data-label': t(`column.${column}`) }, content[column]));
        }
    }

    /** @param {DeviceModel} model */
    update(model) {
        const { device } = model;
        const mark = markOf(device.link);
        setAttribute(this.element, 'data-tone', toneOf(model));
        setAttribute(this.element, 'data-link', device.link.state);
        this.#link.set(mark.icon, mark.text, mark.tone);
        setAttribute(this.#link.element, 'title', device.link.sentence);
        setText(this.#name, device.label || device.name);
        setAttribute(this.#name, 'href', linkTo('device', [device.name]));
        setText(this.#model, device.label ? device.name : '');
        setAttribute(this.#name, 'title', [device.model, device.address].filter(Boolean).join(', '));
        this.#updateSummary(device.summary);
        this.#updateAlarms(model);
        this.#updateChange(device.lastChange);
    }

    /** @param {import('../types').Summary} summary */
    #updateSummary(summary) {
        setText(this.#input, valueText(summary.input));
        setText(this.#output, valueText(summary.output));
        this.#signal.set(summary.signalPresent ? 'signal' : 'no-signal', yesNo(summary.signalPresent, t('signal.present'), t('signal.none')),
            summary.signalPresent === false ? 'warning' : 'ok');
        this.#reference.set(summary.referenceLocked ? 'ok' : 'reference', yesNo(summary.referenceLocked, t('reference.locked'), t('reference.unlocked')),
            summary.referenceLocked === false ? 'warning' : 'ok');
        const locks = [summary.panelLocked ? t('lock.panel') : '', summary.remoteLocked ? t('lock.remote') : ''].filter(Boolean);
        this.#locks.set(locks.length ? 'lock' : null, locks.join(', '), 'ok');
    }

    /** @param {DeviceModel} model */
    #updateAlarms(model) {
        const alarms = conditionsOf(model).filter((mark) => mark.icon === 'alarm');
        const text = alarms.map((mark) => mark.text).join('; ');
        setText(this.#alarms, text);
        setAttribute(this.#alarms, 'class', `tone-${alarms[0]?.tone ?? 'ok'}`);
        setAttribute(this.#alarms, 'title', text);
    }

    /** @param {import('../types').Change | null} change */
    #updateChange(change) {
        if (!change) {
            setText(this.#change, '');
            setText(this.#who, '');
            return;
        }
        const value = valueText(change.new, findProperty(change.property));
        setText(this.#change, `${timeText(change.time)}  ${propertyLabel(change.property)} ${value}`);
        setText(this.#who, change.who || tWord('origin-short', change.origin));
        setAttribute(this.#who, 'title', change.who || tWord('origin', change.origin));
    }
}

/** @param {import('../types').Value | null} value @param {string} yes @param {string} no */
const yesNo = (value, yes, no) => value === null ? '' : value ? yes : no;

/** A shape and its word. */
function makeMark() {
    const icon = makeIcon('live');
    const text = make('span');
    const element = make('span', { class: 'mark' }, icon, text);
    return {
        element,
        /** @param {import('../dom/icons.js').Icon | null} name @param {string} words @param {string} tone */
        set(name, words, tone) {
            setAttribute(element, 'class', `mark tone-${tone}`);
            element.hidden = !words;
            if (name) {
                setIcon(icon, name);
            }
            setText(text, words);
        },
    };
}

import { linkTo } from '../shell/routes.js';
import { t } from '../text/text.js';
import { valueText } from '../text/values.js';
import { make, setAttribute, setText } from '../dom/element.js';
import { makeIcon, setIcon } from '../dom/icons.js';
import { conditionsOf, toneOf } from './conditions.js';
import { markOf } from './link_mark.js';

const fewestLetters = 8; // a name of so many letters has the largest type

/** One device on the wall: its name, its output, and in words what is wrong. */
export class WallTile {
    #icon = makeIcon('live');
    #label = make('span', { class: 'tile-label' });
    #formats = make('span', { class: 'tile-formats' });
    #condition = make('span', { class: 'tile-condition' });
    element = make('a', { class: 'wall-tile' }, make('span', { class: 'tile-top' }, this.#icon, this.#label), this.#formats, this.#condition);

    /** @param {import('../model/device_model.js').DeviceModel} model */
    update(model) {
        const { device } = model;
        const conditions = conditionsOf(model);
        const worst = conditions[0] ?? markOf(device.link);
        setAttribute(this.element, 'href', linkTo('device', [device.name]));
        setAttribute(this.element, 'data-tone', toneOf(model));
        setAttribute(this.element, 'data-link', device.link.state);
        setIcon(this.#icon, worst.icon);
        setText(this.#label, device.label || device.name);
        this.element.style.setProperty('--letters', String(Math.max(fewestLetters, (device.label || device.name).length)));
        setText(this.#formats, model.isConnected ? t('tile.formats', { input: valueText(device.summary.input), output: valueText(device.summary.output) }) : '');
        setText(this.#condition, conditions.length ? conditions.map((mark) => mark.text).join(', ') : device.enabled ? '' : worst.text);
    }
}

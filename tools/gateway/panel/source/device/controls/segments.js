import { wordLabel } from '../../text/labels.js';
import { t } from '../../text/text.js';
import { make, setAttribute } from '../../dom/element.js';

/** @typedef {import('../../types').Value} Value */

/**
 * A few values side by side; the one that the device reports is pressed.
 * @param {import('../control.js').ControlSetup} setup
 * @param {Value[]} values
 * @returns {import('../control.js').Control}
 */
export function makeSegments({ label, send }, values) {
    const buttons = values.map((value) => make('button', { type: 'button', 'data-value': String(value), onclick: () => send(value) }, textOf(value)));
    const element = make('div', { class: 'segments', role: 'group', 'aria-label': label }, ...buttons);
    const elsewhere = make('span', { class: 'reading', hidden: true });
    element.append(elsewhere);
    return {
        element,
        show: (now) => {
            buttons.forEach((button, index) => setAttribute(button, 'aria-pressed', String(values[index] === now)));
            const isOffered = now === null || values.includes(now);
            elsewhere.hidden = isOffered;
            elsewhere.textContent = isOffered ? '' : t('control.not-offered', { value: textOf(now) });
        },
        enable: (isEnabled, why) => buttons.forEach((button) => {
            button.disabled = !isEnabled;
            button.title = why;
        }),
    };
}

/** @param {Value} value */
function textOf(value) {
    return typeof value === 'boolean' ? t(value ? 'value.on' : 'value.off') : wordLabel(String(value));
}

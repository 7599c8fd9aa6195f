import { t } from '../../text/text.js';
import { make } from '../../dom/element.js';

/** Something that is carried out once, with a number if it needs one. @param {import('../control.js').ControlSetup} setup @returns {import('../control.js').Control} */
export function makeCommand({ property, offer, label, send }) {
    const range = offer && !Array.isArray(offer) ? offer : null;
    const number = property.kind === 'number' ? make('input', { type: 'number', 'aria-label': label, min: range?.min, max: range?.max, value: range?.min ?? 1, required: true }) : null;
    const words = property.kind === 'word' ? (Array.isArray(offer) ? offer : property.words ?? []) : [];
    const run = () => !number || number.reportValidity() ? send(number ? Number(number.value) : null) : undefined;
    const buttons = words.length
        ? words.map((word) => make('button', { type: 'button', 'data-value': word, onclick: () => send(word) }, word))
        : [make('button', { type: 'button', 'aria-label': t('control.run-named', { label }), onclick: run }, t('control.run'))];
    const element = make('div', { class: 'command' }, number, ...buttons);
    return {
        element,
        show: () => {},
        enable: (isEnabled, why) => buttons.forEach((button) => {
            button.disabled = !isEnabled;
            button.title = why;
        }),
    };
}

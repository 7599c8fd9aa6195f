import { t } from '../../text/text.js';
import { make, setAttribute } from '../../dom/element.js';

const timecode = '([01]?[0-9]|2[0-3]):[0-5][0-9]:[0-5][0-9][:;][0-5][0-9]';
const encoder = new TextEncoder();

/** A text; Enter sends it, Escape gives it up. @param {import('../control.js').ControlSetup} setup @returns {import('../control.js').Control} */
export function makeTextEntry({ property, label, send }) {
    const input = make('input', { type: 'text', 'aria-label': label, spellcheck: 'false', autocomplete: 'off',
        pattern: property.kind === 'timecode' ? timecode : null, placeholder: property.kind === 'timecode' ? '00:00:00:00' : null });
    const hint = make('span', { class: 'note', hidden: true }, t('control.enter'));
    const element = make('div', { class: 'choice' }, input, hint);
    let reported = '';

    /** @param {boolean} isArmed */
    function arm(isArmed) {
        hint.hidden = !isArmed;
        setAttribute(element, 'data-armed', isArmed);
    }

    input.addEventListener('input', () => {
        const tooLong = property.mostBytes && encoder.encode(input.value).length > property.mostBytes;
        input.setCustomValidity(tooLong ? t('control.too-long', { bytes: property.mostBytes ?? 0 }) : '');
        arm(input.value !== reported);
    });
    input.addEventListener('keydown', (event) => {
        if (event.key === 'Enter' && input.reportValidity() && input.value !== reported) {
            arm(false);
            send(input.value);
        } else if (event.key === 'Escape') {
            arm(false);
            input.value = reported;
        }
    });

    return {
        element,
        show: (value) => {
            reported = value === null ? '' : String(value);
            if (hint.hidden) {
                input.value = reported;
            }
        },
        enable: (isEnabled, why) => {
            input.disabled = !isEnabled;
            input.title = why;
        },
    };
}

import { t } from '../../text/text.js';
import { make } from '../../dom/element.js';

const everything = '0xffffffff';

/** A command that bits select parts of: all of them, or the ones that somebody enters. @param {import('../control.js').ControlSetup} setup @returns {import('../control.js').Control} */
export function makeBits({ label, send }) {
    const bits = make('input', { type: 'text', value: everything, pattern: '0[xX][0-9a-fA-F]{1,8}|[0-9]{1,10}', required: true, 'aria-label': t('control.bits', { label }) });
    const run = make('button', { type: 'button', 'aria-label': t('control.run-named', { label }), onclick: () => bits.reportValidity() && send(bits.value) }, t('control.reset'));
    return {
        element: make('div', { class: 'command' }, bits, run),
        show: () => {},
        enable: (isEnabled, why) => [bits, run].forEach((input) => {
            input.disabled = !isEnabled;
            input.title = why;
        }),
    };
}

import { wordLabel } from '../../text/labels.js';
import { valueText } from '../../text/values.js';
import { make, setAttribute, setText } from '../../dom/element.js';

/** A value that a device reports and that cannot be set. @param {import('../control.js').ControlSetup} setup @returns {import('../control.js').Control} */
export function makeReading({ property }) {
    const element = make('output', { class: 'reading' });
    return {
        element,
        show: (value) => {
            setText(element, typeof value === 'string' ? wordLabel(value) : valueText(value, property));
            setAttribute(element, 'data-value', value === null ? null : String(value));
        },
        enable: () => {},
    };
}

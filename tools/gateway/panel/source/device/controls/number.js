import { make, setText } from '../../dom/element.js';
import { valueText } from '../../text/values.js';
import { t } from '../../text/text.js';

/** @typedef {import('../../types').Range} Range */

/**
 * A slider for the range that the device offers now, and a field for exact values.
 * @param {import('../control.js').ControlSetup} setup
 * @returns {import('../control.js').Control}
 */
export function makeNumber({ property, offer, label, send, newGesture }) {
    const range = /** @type {Range | null} */ (offer && !Array.isArray(offer) ? offer : null);
    const step = property.kind === 'decimal' ? '0.01' : '1';
    const limits = { min: range?.min ?? property.min ?? null, max: range?.max ?? property.max ?? null, step };
    const entry = make('input', { type: 'number', 'aria-label': label, ...limits, required: true });
    const slider = range ? make('input', { type: 'range', 'aria-label': t('control.slider', { label }), ...limits }) : null;
    const note = make('span', { class: 'note range' }, rangeText(range, property));
    const element = make('div', { class: 'number' }, slider, entry, note);
    let gesture = 0;
    let isDragging = false;
    let reported = /** @type {number | null} */ (null);

    slider?.addEventListener('pointerdown', () => {
        gesture = newGesture();
        isDragging = true;
    });
    slider?.addEventListener('keydown', () => (gesture = newGesture()));
    slider?.addEventListener('input', () => {
        entry.value = slider.value;
        send(Number(slider.value), gesture);
    });
    slider?.addEventListener('change', () => (isDragging = false));
    entry.addEventListener('change', () => apply());
    entry.addEventListener('keydown', (event) => {
        if (event.key === 'Enter') {
            apply();
        } else if (event.key === 'Escape') {
            showValue();
        }
    });

    function apply() {
        if (entry.reportValidity() && Number(entry.value) !== reported) {
            send(Number(entry.value));
        }
    }

    function showValue() {
        const text = reported === null ? '' : property.kind === 'decimal' ? reported.toFixed(2) : String(reported);
        entry.value = text;
        if (slider) {
            slider.value = text;
            slider.setAttribute('aria-valuetext', valueText(reported, property));
        }
    }

    return {
        element,
        show: (value) => {
            const isEditing = document.activeElement === entry && entry.value !== '' && Number(entry.value) !== reported;
            reported = typeof value === 'number' ? value : null;
            if (!isDragging && !isEditing) {
                showValue();
            }
            setText(note, rangeText(range, property));
        },
        enable: (isEnabled, why) => [slider, entry].forEach((input) => {
            if (input) {
                input.disabled = !isEnabled;
                input.title = why;
            }
        }),
    };
}

/** @param {Range | null} range @param {import('../../types').Property} property */
function rangeText(range, property) {
    const limits = range ? t('control.range', { min: valueText(range.min, { ...property, unit: undefined }), max: valueText(range.max, { ...property, unit: undefined }) }) : '';
    return [limits, property.unit && property.unit !== 'line number' ? property.unit : ''].filter(Boolean).join(' ');
}

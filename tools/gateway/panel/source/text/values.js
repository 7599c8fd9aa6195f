import { wordLabel } from './labels.js';
import { t } from './text.js';

/**
 * A value as people read it.
 * @param {import('../types').Value | null | undefined} value
 * @param {import('../types').Property} [property]
 */
export function valueText(value, property) {
    if (value === null || value === undefined) {
        return t('value.unknown');
    }
    if (typeof value === 'boolean') {
        return value ? t('value.yes') : t('value.no');
    }
    if (typeof value === 'object') {
        return JSON.stringify(value);
    }
    const text = typeof value === 'number' ? numberText(value, property) : wordLabel(value);
    return property?.unit && property.unit !== 'line number' ? `${text} ${property.unit}` : text;
}

/** @param {number} value @param {import('../types').Property} [property] */
function numberText(value, property) {
    const text = property?.kind === 'decimal' ? value.toFixed(2) : String(value);
    return text.replace('-', '\u2212');
}

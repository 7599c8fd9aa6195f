import { fleet } from '../model/application.js';
import { findProperty } from '../model/properties.js';
import { propertyLabel } from '../text/labels.js';
import { t } from '../text/text.js';
import { valueText } from '../text/values.js';
import { make } from '../dom/element.js';
import { makeIcon } from '../dom/icons.js';
import { previewOf } from './preview.js';

/** @typedef {import('../types').Step} Step */

/**
 * The steps of a salvo, and what each would change now.
 * @param {Step[]} steps
 * @param {{onlyDifferent: boolean, remove: ((index: number) => void) | null}} options
 */
export function makeStepsTable(steps, { onlyDifferent, remove }) {
    const heads = ['device', 'property', 'now', 'then', ''].map((name) => make('th', { scope: 'col' }, name ? t(/** @type {any} */ (`step.${name}`)) : ''));
    const rows = previewOf(steps).map((row, index) => ({ ...row, index })).filter((row) => !onlyDifferent || row.differs).map(({ step, now, isConnected, differs, index }) => {
        const property = findProperty(step.property);
        const button = remove && make('button', { class: 'quiet', 'aria-label': t('step.remove', { label: propertyLabel(step.property) }), onclick: () => remove(index) }, makeIcon('cross'));
        const present = isConnected ? valueText(now, property) : t('control.not-connected');
        return make('tr', { 'data-differs': String(differs) }, make('td', {}, fleet.find(step.device)?.device.label ?? step.device),
            make('td', { title: step.property }, propertyLabel(step.property)), make('td', {}, present), make('td', {}, make('span', { class: 'mark' }, makeIcon(differs ? 'right' : 'ok'), make('span', {}, valueText(step.value, property)))), make('td', {}, button));
    });
    return make('div', { class: 'scroll' }, make('table', { class: 'lines steps' }, make('thead', {}, make('tr', {}, ...heads)), make('tbody', {}, ...rows)));
}

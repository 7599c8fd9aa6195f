import { fleet } from '../model/application.js';
import { findProperty } from '../model/properties.js';
import { propertyLabel } from '../text/labels.js';
import { t, tWord } from '../text/text.js';
import { valueText } from '../text/values.js';
import { make } from '../dom/element.js';
import { makeIcon } from '../dom/icons.js';

/** @type {Record<string, [import('../dom/icons.js').Icon, string]>} */
const marks = {
    '': ['waiting', 'off'], sending: ['waiting', 'waiting'], confirmed: ['ok', 'ok'], same: ['ok', 'ok'], 'would-set': ['right', 'ok'],
    adjusted: ['adjusted', 'warning'], skipped: ['off', 'off'], 'rolled-back': ['undo', 'warning'],
};

/** A run, step by step. @param {import('../types').Run} run */
export function makeRunTable(run) {
    const heads = ['device', 'property', 'before', 'then', 'outcome'].map((name) => make('th', { scope: 'col' }, t(/** @type {any} */ (`step.${name}`))));
    const rows = run.steps.map((step) => {
        const property = findProperty(step.property);
        const [icon, tone] = marks[step.outcome ?? ''] ?? ['cross', 'alarm'];
        const outcome = [tWord('outcome', step.outcome || 'waiting'), step.sentence].filter(Boolean).join(': ');
        return make('tr', {}, make('td', {}, fleet.find(step.device)?.device.label ?? step.device), make('td', { title: step.property }, propertyLabel(step.property)),
            make('td', {}, valueText(step.old, property)), make('td', {}, valueText(step.value, property)), make('td', {}, make('span', { class: `mark tone-${tone}` }, makeIcon(icon), make('span', {}, outcome))));
    });
    return make('div', { class: 'scroll' }, make('table', { class: 'lines run' }, make('thead', {}, make('tr', {}, ...heads)), make('tbody', {}, ...rows)));
}

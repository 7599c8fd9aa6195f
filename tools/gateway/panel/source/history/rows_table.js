import { fleet } from '../model/application.js';
import { findProperty } from '../model/properties.js';
import { linkTo } from '../shell/routes.js';
import { propertyLabel } from '../text/labels.js';
import { t } from '../text/text.js';
import { exactTimeText } from '../text/times.js';
import { valueText } from '../text/values.js';
import { make } from '../dom/element.js';
import { whoText } from './who_strip.js';

const mostRows = 200;

/** The changes in words, the newest first. @param {import('../types').HistoryRow[]} rows the oldest first */
export function makeRowsTable(rows) {
    const heads = ['time', 'device', 'property', 'old', 'new', 'who'].map((name) => make('th', { scope: 'col' }, t(/** @type {any} */ (`history.${name}`))));
    const body = rows.slice(-mostRows).reverse().map((row) => {
        const property = findProperty(row.property);
        return make('tr', {}, make('td', { class: 'time' }, exactTimeText(row.time)), make('td', {}, make('a', { href: linkTo('device', [row.device]) }, fleet.find(row.device)?.device.label ?? row.device)),
            make('td', { title: row.property }, propertyLabel(row.property)), make('td', {}, valueText(row.old, property)), make('td', {}, valueText(row.new, property)), make('td', {}, whoText(row)));
    });
    return make('div', { class: 'scroll' }, make('table', { class: 'lines' }, make('thead', {}, make('tr', {}, ...heads)), make('tbody', {}, ...body)),
        rows.length === 0 ? make('p', { class: 'note' }, t('history.none')) : null, rows.length > mostRows ? make('p', { class: 'note' }, t('history.more', { count: mostRows })) : null);
}

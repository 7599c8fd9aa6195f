import { findProperty } from '../model/properties.js';
import { propertyLabel } from '../text/labels.js';
import { t, tWord } from '../text/text.js';
import { timeText } from '../text/times.js';
import { valueText } from '../text/values.js';
import { make } from '../dom/element.js';
import { place } from './layout.js';

const closest = 9; // per cent: markers that are closer become one

/** @typedef {import('../types').HistoryRow} HistoryRow */

/** @param {HistoryRow} row */
export const whoText = (row) => row.who || tWord('origin', row.origin);

/** Who changed something, above the lanes, at the moment when they did. @param {HistoryRow[]} rows @param {import('./history_query.js').Period} period */
export function makeWhoStrip(rows, period) {
    const strip = make('div', { class: 'who-strip', 'aria-hidden': 'true' });
    for (const row of rows) {
        const tick = make('span', { class: 'who-tick' });
        tick.style.left = `${place(Date.parse(row.time), period)}%`;
        strip.append(tick);
    }
    for (const group of groupsOf(rows, period)) {
        const names = [...new Set(group.rows.map(whoText))].join(', ');
        const marker = make('span', { class: 'who-marker', title: group.rows.slice(-8).map(lineOf).join('\n') }, group.rows.length > 1 ? t('history.several', { names, count: group.rows.length }) : names);
        marker.style.left = `${group.at}%`;
        strip.append(marker);
    }
    return strip;
}

/** @param {HistoryRow[]} rows @param {import('./history_query.js').Period} period */
function groupsOf(rows, period) {
    /** @type {{at: number, rows: HistoryRow[]}[]} */
    const groups = [];
    for (const row of rows) {
        const at = place(Date.parse(row.time), period);
        const last = groups.at(-1);
        if (last && at - last.at < closest) {
            last.rows.push(row);
        } else {
            groups.push({ at, rows: [row] });
        }
    }
    return groups;
}

/** @param {HistoryRow} row */
function lineOf(row) {
    const property = findProperty(row.property);
    return `${timeText(row.time)} ${whoText(row)}: ${propertyLabel(row.property)} ${valueText(row.old, property)} \u2192 ${valueText(row.new, property)}`;
}

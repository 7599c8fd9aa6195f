import { make } from '../dom/element.js';
import { place } from './layout.js';
import { marksOf } from './series.js';

const perMark = 110; // pixels
const day = 86400000;

/** @param {import('./history_query.js').Period} period @param {number} width */
export function makeTimeAxis(period, width) {
    const isLong = period.to - period.from > 2 * day;
    const isShort = period.to - period.from < 1000 * 60 * 10;
    const format = new Intl.DateTimeFormat('en-GB', isLong ? { day: '2-digit', month: 'short' } : { hour: '2-digit', minute: '2-digit', second: isShort ? '2-digit' : undefined });
    const axis = make('div', { class: 'time-axis', 'aria-hidden': 'true' });
    for (const moment of marksOf(period, Math.max(2, Math.floor(width / perMark)))) {
        const mark = make('span', {}, format.format(moment));
        mark.style.left = `${place(moment, period)}%`;
        axis.append(mark);
    }
    return axis;
}

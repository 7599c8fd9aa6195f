// Changes as what was in force from when to when.

/** @typedef {import('../types').Value} Value */
/** @typedef {import('../types').HistoryRow} HistoryRow */
/** @typedef {import('./history_query.js').Period} Period */
/** @typedef {{from: number, to: number, value: Value | null}} Stretch */

/**
 * @param {HistoryRow[]} rows of one property, the oldest first
 * @param {Period} period
 * @param {Value | null} otherwise the value in force, for a period without a change
 * @returns {Stretch[]}
 */
export function stretchesOf(rows, period, otherwise) {
    const end = Math.min(period.to, Date.now());
    const starts = [{ from: period.from, value: rows.length ? rows[0].old : otherwise },
        ...rows.map((row) => ({ from: Date.parse(row.time), value: row.new }))];
    return starts.map((start, index) => ({ ...start, to: starts[index + 1]?.from ?? end })).filter((stretch) => stretch.to > stretch.from);
}

/** The same as two lists for a stepped plot, in seconds. @param {Stretch[]} stretches @returns {[number[], (number | null)[]]} */
export function stepsOf(stretches) {
    const last = stretches.at(-1);
    const number = (/** @type {Value | null} */ value) => typeof value === 'number' ? value : null;
    const times = stretches.map((stretch) => stretch.from / 1000);
    const values = stretches.map((stretch) => number(stretch.value));
    return last ? [[...times, last.to / 1000], [...values, number(last.value)]] : [[], []];
}

const rounds = [1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 14400, 21600, 43200, 86400, 172800, 604800].map((seconds) => seconds * 1000);

/** Moments for the marks of a time axis. @param {Period} period @param {number} most */
export function marksOf({ from, to }, most) {
    const step = rounds.find((round) => (to - from) / round <= most) ?? rounds[rounds.length - 1];
    const shift = new Date(from).getTimezoneOffset() * 60000;
    const first = Math.ceil((from - shift) / step) * step + shift;
    return Array.from({ length: Math.max(0, Math.floor((to - first) / step) + 1) }, (_, index) => first + index * step);
}

import { get } from '../api/client.js';

/** @typedef {import('../types').HistoryRow} HistoryRow */
/** @typedef {{from: number, to: number}} Period in milliseconds */

const inAPage = 1000;
const mostPages = 5;

/** The address of what is asked for; `format` csv or jsonl for a file with all of it. @param {string} table @param {Record<string, string>} query */
export function addressOf(table, query) {
    const used = Object.entries(query).filter(([, value]) => value !== '');
    return `/${table}?${new URLSearchParams(used)}`;
}

/**
 * Rows of a period, the oldest first.
 * @param {string} table history or audit
 * @param {Record<string, string>} filter
 * @param {Period} period
 * @returns {Promise<{rows: any[], isComplete: boolean, problem: import('../api/client.js').Answer | null}>}
 */
export async function readRows(table, filter, period) {
    const query = { ...filter, ...periodQuery(period), limit: String(inAPage) };
    const rows = [];
    let after = '';
    for (let page = 0; page < mostPages; page++) {
        const answer = await get(addressOf(table, { ...query, after }));
        if (!answer.ok) {
            return { rows: rows.reverse(), isComplete: false, problem: answer };
        }
        rows.push(...answer.body.rows);
        after = answer.body.next ?? '';
        if (!after) {
            return { rows: rows.reverse(), isComplete: true, problem: null };
        }
    }
    return { rows: rows.reverse(), isComplete: false, problem: null };
}

/** What the last change before a moment set; null if none is known. @param {string} device @param {string} property @param {number} moment */
export async function readValueBefore(device, property, moment) {
    const answer = await get(addressOf('history', { device, property, to: new Date(moment).toISOString(), limit: '1' }));
    return answer.ok ? answer.body.rows[0]?.new ?? null : null;
}

/** @param {Period} period */
export const periodQuery = ({ from, to }) => ({ from: new Date(from).toISOString(), to: new Date(to).toISOString() });

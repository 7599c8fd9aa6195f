import { t } from '../text/text.js';
import { make } from '../dom/element.js';
import { addressOf } from './history_query.js';

/** Files with everything that is asked for. @param {string} table @param {Record<string, string>} query */
export function makeExportLinks(table, query) {
    const link = (/** @type {string} */ format, /** @type {import('../text/text.js').TextKey} */ key) =>
        make('a', { class: 'button', href: `/api/v1${addressOf(table, { ...query, format })}`, download: `${table}.${format}` }, t(key));
    return make('span', { class: 'exports' }, link('csv', 'export.csv'), link('jsonl', 'export.jsonl'));
}

// Short messages about what has just happened; a screen reader reads them.
import { t } from '../text/text.js';
import { make } from '../dom/element.js';
import { makeIcon } from '../dom/icons.js';

const area = make('div', { class: 'notices', role: 'status', 'aria-live': 'polite' });
const shownFor = 8000;

export const noticeArea = area;

/** @param {string} text @param {'ok' | 'alarm' | 'adjusted'} [tone] */
export function notify(text, tone = 'ok') {
    const icon = makeIcon(tone === 'ok' ? 'ok' : tone === 'adjusted' ? 'adjusted' : 'alarm');
    const close = make('button', { class: 'quiet', 'aria-label': t('close'), onclick: () => notice.remove() }, makeIcon('cross'));
    const notice = make('div', { class: `notice tone-${tone}` }, icon, make('span', {}, text), close);
    area.append(notice);
    setTimeout(() => notice.remove(), shownFor);
}

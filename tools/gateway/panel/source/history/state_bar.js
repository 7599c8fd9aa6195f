import { wordLabel } from '../text/labels.js';
import { timeText } from '../text/times.js';
import { valueText } from '../text/values.js';
import { t } from '../text/text.js';
import { make } from '../dom/element.js';
import { place } from './layout.js';

const kinds = 6;

/** Words over time: a bar for each, its word inside, and a pattern of its own so that neighbours differ. */
export class StateBar {
    element = make('div', { class: 'state-bar' });

    /** @param {import('./series.js').Stretch[]} stretches @param {import('./history_query.js').Period} period */
    draw(stretches, period) {
        const words = [...new Set(stretches.map((stretch) => String(stretch.value)))];
        this.element.replaceChildren(...stretches.map((stretch) => {
            const text = stretch.value === null ? t('history.unknown') : typeof stretch.value === 'string' ? wordLabel(stretch.value) : valueText(stretch.value);
            const bar = make('span', { class: 'state', 'data-kind': stretch.value === null ? 'unknown' : String(words.indexOf(String(stretch.value)) % kinds),
                title: t('history.stretch', { value: text, from: timeText(stretch.from), to: timeText(stretch.to) }) }, text);
            bar.style.left = `${place(stretch.from, period)}%`;
            bar.style.width = `${place(stretch.to, period) - place(stretch.from, period)}%`;
            return bar;
        }));
    }
}

import { t } from '../text/text.js';
import { timeText } from '../text/times.js';
import { make, setAttribute, setText } from '../dom/element.js';

/** @typedef {import('./history_query.js').Period} Period */

const minute = 60000;
/** @type {[import('../text/text.js').TextKey, number][]} */
const lengths = [['period.15min', 15 * minute], ['period.hour', 60 * minute], ['period.day', 1440 * minute], ['period.week', 10080 * minute]];
const shortest = 2000;

/** Chooses the period: the last so many minutes, which follow the clock, or a part of the past. */
export class PeriodBar {
    #choose;
    #length = lengths[0][1];
    /** @type {Period | null} a part of the past; null for "until now" */
    #fixed = null;
    #text = make('span', { class: 'period-text', role: 'status' });
    #buttons;
    element;

    /** @param {() => void} choose */
    constructor(choose) {
        this.#choose = choose;
        this.#buttons = lengths.map(([key, length]) => make('button', { onclick: () => this.#last(length) }, t(key)));
        const moves = /** @type {[import('../text/text.js').TextKey, () => void][]} */ ([['period.earlier', () => this.#move(-0.5)], ['period.later', () => this.#move(0.5)],
            ['period.in', () => this.#scale(0.5)], ['period.out', () => this.#scale(2)]]);
        this.element = make('div', { class: 'toolbar' }, make('span', { class: 'segments', role: 'group', 'aria-label': t('period') }, ...this.#buttons),
            ...moves.map(([key, act]) => make('button', { onclick: act }, t(key))), this.#text);
        this.#show();
    }

    /** @returns {Period} */
    get period() {
        const now = Date.now();
        return this.#fixed ?? { from: now - this.#length, to: now };
    }

    get isNow() {
        return this.#fixed === null;
    }

    /** @param {number} from @param {number} to as fractions of the present period */
    zoom(from, to) {
        const { from: start, to: end } = this.period;
        this.#fix({ from: start + from * (end - start), to: start + to * (end - start) });
    }

    /** @param {number} length */
    #last(length) {
        this.#length = length;
        this.#fixed = null;
        this.#show();
        this.#choose();
    }

    /** @param {number} by */
    #move(by) {
        const { from, to } = this.period;
        const shift = Math.min(by * (to - from), Date.now() - to);
        this.#fix({ from: from + shift, to: to + shift });
    }

    /** @param {number} by */
    #scale(by) {
        const { from, to } = this.period;
        const length = Math.max(shortest, (to - from) * by);
        if (this.isNow) {
            this.#last(length);
            return;
        }
        const end = Math.min((from + to + length) / 2, Date.now());
        this.#fix({ from: end - length, to: end });
    }

    /** @param {Period} period */
    #fix(period) {
        this.#fixed = period.to - period.from < shortest ? { from: period.to - shortest, to: period.to } : period;
        this.#show();
        this.#choose();
    }

    #show() {
        this.#buttons.forEach((button, index) => setAttribute(button, 'aria-pressed', String(this.isNow && lengths[index][1] === this.#length)));
        setText(this.#text, this.isNow ? t('period.now') : t('period.fixed', { from: timeText(this.period.from), to: timeText(this.period.to) }));
    }
}

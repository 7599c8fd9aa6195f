import { t } from '../text/text.js';
import { make, setAttribute, setText } from '../dom/element.js';
import { makeIcon, setIcon } from '../dom/icons.js';

/** @type {Record<string, import('../dom/icons.js').Icon>} */
const icons = { pending: 'waiting', confirmed: 'ok', adjusted: 'adjusted', refused: 'cross', failed: 'alarm' };

/** What has become of a change, beside the control with which it was made. */
export class AttemptMark {
    #icon = makeIcon('ok');
    #text = make('span');
    element = make('span', { class: 'attempt', role: 'status' });

    /** @param {import('../types').Attempt | undefined} attempt */
    show(attempt) {
        setAttribute(this.element, 'data-state', attempt?.state ?? null);
        if (!attempt) {
            this.element.replaceChildren();
            return;
        }
        setIcon(this.#icon, icons[attempt.state]);
        setText(this.#text, attempt.text || t('attempt.confirmed'));
        if (!this.element.firstChild) {
            this.element.append(this.#icon, this.#text);
        }
    }
}

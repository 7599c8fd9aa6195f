import { currentRoute, linkTo } from '../shell/routes.js';
import { t } from '../text/text.js';
import { Component } from '../dom/component.js';
import { make, replaceChildren } from '../dom/element.js';
import { AuditPart } from './audit_part.js';
import { ValuesPart } from './values_part.js';

/** What happened: values over time, and every attempt to change one. */
export class HistoryView extends Component {
    /** @type {ValuesPart | AuditPart | null} */
    #part = null;

    start() {
        this.#show();
        this.listenTo(window, 'hashchange', () => currentRoute().view === 'history' && this.#show());
        this.whenGone(() => this.#part?.stop());
    }

    #show() {
        const { parts, query } = currentRoute();
        const isAudit = parts[0] === 'audit';
        this.#part?.stop();
        this.#part = isAudit ? new AuditPart() : new ValuesPart(query.get('device'), query.get('property'));
        const tab = (/** @type {string[]} */ path, /** @type {boolean} */ isHere, /** @type {import('../text/text.js').TextKey} */ key) => make('a', { href: linkTo('history', path), 'aria-current': isHere ? 'page' : null }, t(key));
        replaceChildren(this, make('h1', { class: 'visually-hidden' }, t('view.history')), make('nav', { class: 'tabs', 'aria-label': t('view.history') }, tab([], !isAudit, 'history.values'), tab(['audit'], isAudit, 'history.audit')), this.#part.element);
    }
}

customElements.define('history-view', HistoryView);

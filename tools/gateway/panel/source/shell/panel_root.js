import { events, openStream, readFleet, readPerson, readProperties } from '../model/application.js';
import { t } from '../text/text.js';
import { Component } from '../dom/component.js';
import { append, make } from '../dom/element.js';
import { noticeArea } from './notices.js';
import { currentRoute } from './routes.js';
import { loadAllViews, loadView } from './views.js';
import './top_bar.js';
import '../people/sign_in.js';

/** The whole panel: the bar, and the view that the address names. */
export class PanelRoot extends Component {
    #main = make('main', { id: 'main', tabindex: '-1' });
    #isSignedIn = false;

    async start() {
        const skip = make('button', { class: 'skip', onclick: () => this.#main.focus() }, t('skip'));
        append(this, [skip, document.createElement('top-bar'), this.#main, noticeArea]);
        this.listenTo(window, 'hashchange', () => this.#show());
        this.listenTo(events, 'signed-out', () => this.#askToSignIn());
        this.listenTo(events, 'signed-in', () => this.#begin());
        await this.#begin();
    }

    async #begin() {
        const [isKnown] = await Promise.all([readPerson(), readProperties(), readFleet()]);
        this.#isSignedIn = isKnown;
        if (isKnown) {
            openStream();
            this.#show();
        } else {
            this.#askToSignIn();
        }
    }

    #askToSignIn() {
        this.#isSignedIn = false;
        this.#main.replaceChildren(document.createElement('sign-in'));
    }

    async #show() {
        const { view, parts } = currentRoute();
        const name = await loadView(view);
        if (!this.#isSignedIn || currentRoute().view !== view) {
            return;
        }
        const key = `${name} ${view === 'device' ? parts[0] : ''}`;
        if (this.#main.dataset.shown === key && this.#main.firstElementChild?.localName === name) {
            return;
        }
        this.#main.dataset.shown = key;
        this.#main.replaceChildren(document.createElement(name));
        scrollTo(0, 0);
        loadAllViews();
    }
}

customElements.define('panel-root', PanelRoot);

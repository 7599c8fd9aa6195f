import { get } from '../api/client.js';
import { may } from '../model/person.js';
import { currentRoute, go, linkTo } from '../shell/routes.js';
import { t } from '../text/text.js';
import { Component } from '../dom/component.js';
import { append, make, replaceChildren } from '../dom/element.js';
import { SalvoEditor } from './salvo_editor.js';

/** @typedef {import('../types').Salvo} Salvo */

/** @type {Salvo} */
const empty = { name: '', label: '', steps: [], onFailure: 'stop' };
const newName = 'new';

/** Named sets of changes over several devices. */
export class SalvosView extends Component {
    #list = make('nav', { class: 'salvo-list', 'aria-label': t('view.salvos') });
    #content = make('div', { class: 'salvo-content' });
    /** @type {SalvoEditor | null} */
    #editor = null;
    /** @type {Salvo[]} */
    #salvos = [];

    async start() {
        append(this, [make('h1', { class: 'visually-hidden' }, t('view.salvos')), make('div', { class: 'device-body' }, this.#list, this.#content)]);
        this.listenTo(window, 'hashchange', () => currentRoute().view === 'salvos' && this.#show());
        this.whenGone(() => this.#editor?.stop());
        await this.#read();
    }

    async #read() {
        const answer = await get('/salvos');
        this.#salvos = answer.ok ? answer.body.salvos ?? answer.body : [];
        this.#show();
    }

    #show() {
        const chosen = currentRoute().parts[0] ?? this.#salvos[0]?.name;
        const link = (/** @type {string} */ name, /** @type {string} */ text) => make('a', { href: linkTo('salvos', [name]), 'aria-current': name === chosen ? 'page' : null }, text);
        const add = may('editSalvo') ? link(newName, t('salvo.new')) : make('span', { class: 'note', title: t('may.needs', { role: t('role.engineer') }) }, t('salvo.new'));
        replaceChildren(this.#list, ...this.#salvos.map((salvo) => link(salvo.name, salvo.label || salvo.name)), add);
        this.#editor?.stop();
        this.#editor = null;
        const salvo = chosen === newName ? empty : this.#salvos.find((each) => each.name === chosen);
        if (!salvo) {
            replaceChildren(this.#content, make('p', { class: 'empty' }, t('salvo.none')));
            return;
        }
        this.#editor = new SalvoEditor(salvo, chosen === newName, this.#salvos.filter((other) => other !== salvo), (name) => this.#saved(name));
        replaceChildren(this.#content, this.#editor.element);
    }

    /** @param {string | null} name */
    async #saved(name) {
        await this.#read();
        go(linkTo('salvos', name ? [name] : []));
    }
}

customElements.define('salvos-view', SalvosView);

import { events } from '../model/application.js';
import { currentPerson } from '../model/person.js';
import { t, tWord } from '../text/text.js';
import { Component } from '../dom/component.js';
import { append, make, makeSelect, replaceChildren } from '../dom/element.js';
import { makeIcon } from '../dom/icons.js';
import { currentRoute, linkTo } from './routes.js';
import { showShortcuts } from './shortcuts.js';
import { chooseTheme, chosenTheme, themes } from './theme.js';
import './stream_mark.js';

/** @type {['fleet' | 'history' | 'salvos' | 'people', import('../dom/icons.js').Icon][]} */
const views = [['fleet', 'fleet'], ['history', 'history'], ['salvos', 'salvos'], ['people', 'people']];

/** Where one is, where one can go, whether it is live, and who one is. */
export class TopBar extends Component {
    #links = make('nav', { 'aria-label': t('views') });
    #person = make('a', { class: 'person', href: linkTo('people') });

    start() {
        this.setAttribute('role', 'banner');
        append(this, [make('a', { class: 'brand', href: linkTo('fleet') }, t('brand')), this.#links,
            make('span', { class: 'space' }), document.createElement('stream-mark'), makeThemeChoice(),
            make('button', { class: 'quiet', 'aria-label': t('shortcuts'), title: t('shortcuts'), onclick: showShortcuts }, makeIcon('help')),
            this.#person]);
        this.listenTo(window, 'hashchange', () => this.#showLinks());
        this.listenTo(events, 'person', () => this.#showPerson());
        this.#showLinks();
        this.#showPerson();
    }

    #showLinks() {
        const here = currentRoute().view;
        const isHere = (/** @type {string} */ view) => here === view || (view === 'fleet' && here === 'device');
        replaceChildren(this.#links, ...views.map(([view, icon]) => make('a',
            { href: linkTo(view), 'aria-current': isHere(view) ? 'page' : null }, makeIcon(icon), make('span', {}, t(`view.${view}`)))));
    }

    #showPerson() {
        const person = currentPerson();
        const name = person?.user ?? (person ? t('person.open') : t('person.none'));
        replaceChildren(this.#person, make('span', {}, name), person ? make('span', { class: 'note' }, tWord('role', person.role)) : null);
    }
}

function makeThemeChoice() {
    const select = makeSelect(themes.map((theme) => [theme, t(`theme.${theme}`)]), chosenTheme(), { 'aria-label': t('theme'), title: t('theme') });
    select.addEventListener('change', () => chooseTheme(/** @type {import('./theme.js').Theme} */ (select.value)));
    return make('span', { class: 'theme-choice' }, makeIcon('theme'), select);
}

customElements.define('top-bar', TopBar);

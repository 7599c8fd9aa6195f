import { get, problemText, request } from '../api/client.js';
import { readPerson, takeSignedOut } from '../model/application.js';
import { actions, currentPerson, may, roleFor } from '../model/person.js';
import { notify } from '../shell/notices.js';
import { t, tWord } from '../text/text.js';
import { Component } from '../dom/component.js';
import { append, make } from '../dom/element.js';
import { makeIcon } from '../dom/icons.js';
import { makeTokens } from './tokens.js';
import { makeUsers } from './users.js';

/** Who I am, what I may do, and, for those who may, who else may do what. */
export class PeopleView extends Component {
    async start() {
        await readPerson();
        const isAdmin = may('managePeople');
        const [users, tokens] = await Promise.all([isAdmin ? get('/users') : null, isAdmin ? get('/tokens') : null]);
        append(this, [make('h1', { class: 'visually-hidden' }, t('view.people')), makeMe(), makeRights(),
            makeUsers(users?.ok ? users.body.users ?? users.body : [], isAdmin, () => this.#again()), makeTokens(tokens?.ok ? tokens.body.tokens ?? tokens.body : [], isAdmin, () => this.#again())]);
    }

    #again() {
        this.replaceChildren();
        this.start();
    }
}

function makeMe() {
    const person = currentPerson();
    const isOpen = person?.authentication === 'open';
    const buttons = isOpen ? [] : [make('button', { onclick: () => leave('/logout') }, t('sign-out')), make('button', { onclick: () => leave('/logout-everywhere') }, t('sign-out.everywhere'))];
    return make('section', { class: 'card' }, make('h2', {}, person?.user ?? t('person.open')), make('p', {}, isOpen ? t('person.open.note') : t('person.role', { role: tWord('role', person?.role ?? '') })),
        make('div', { class: 'toolbar' }, ...buttons));
}

/** What the role allows, and what it does not: shown all the same. */
function makeRights() {
    const scopes = currentPerson()?.scopes ?? [];
    const rows = actions.map((action) => {
        const isAllowed = may(action);
        const mark = make('span', { class: 'mark' }, makeIcon(isAllowed ? 'ok' : 'cross'), make('span', {}, isAllowed ? t('value.yes') : t('may.needs', { role: tWord('role', roleFor(action)) })));
        return make('tr', { 'data-allowed': String(isAllowed) }, make('th', { scope: 'row' }, t(`action.${action}`)), make('td', {}, mark));
    });
    const where = scopes.map((scope) => make('li', {}, t('scope', { devices: scope.devices, properties: scope.properties })));
    return make('section', { class: 'card' }, make('h2', {}, t('rights')), make('table', { class: 'lines' }, make('tbody', {}, ...rows)),
        where.length ? make('div', {}, make('h3', {}, t('scopes')), make('ul', {}, ...where)) : null);
}

/** @param {string} path */
async function leave(path) {
    const answer = await request('POST', path, {});
    if (answer.ok || answer.status === 401) {
        takeSignedOut();
    } else {
        notify(problemText(answer, t('attempt.unreachable')), 'alarm');
    }
}

customElements.define('people-view', PeopleView);

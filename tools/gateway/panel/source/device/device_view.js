import { changes, events, fleet, streamState } from '../model/application.js';
import { fleetItself } from '../model/fleet.js';
import { allProperties } from '../model/properties.js';
import { favourites } from '../model/preferences.js';
import { currentRoute, linkTo } from '../shell/routes.js';
import { t } from '../text/text.js';
import { Component } from '../dom/component.js';
import { append, make, makeSelect, replaceChildren, setAttribute } from '../dom/element.js';
import { DeviceCompare } from './device_compare.js';
import { DeviceHead } from './device_head.js';
import { DeviceLoader } from './device_loader.js';
import { groupsOf } from './groups.js';
import { makeSection } from './section.js';

const favouritesGroup = { id: 'favourites', sections: [] };

/** Everything about one device, group by group. */
export class DeviceView extends Component {
    #name = currentRoute().parts[0] ?? '';
    #loader = new DeviceLoader(this.#name);
    #head = new DeviceHead(this.#name);
    #tabs = make('nav', { class: 'groups', 'aria-label': t('device.groups') });
    #content = make('div', { class: 'group-content' });
    /** @type {{update(model: import('../model/device_model.js').DeviceModel): void, element: HTMLElement, properties: import('../types').Property[], watched?: string[]}[]} */
    #sections = [];
    #shownGroup = '';

    async start() {
        append(this, [this.#head.element, make('div', { class: 'device-body' }, this.#tabs, this.#content)]);
        this.listenTo(window, 'hashchange', () => this.#show());
        this.listenTo(document, 'keydown', (event) => this.#onKey(event));
        this.listenTo(events, 'state', () => streamState() === 'live' && this.#loader.loadAll());
        this.whenGone(fleet.listen((names) => this.#watched().some((name) => names.has(name)) ? this.#update() : undefined));
        this.whenGone(() => this.#loader.stop());
        this.#show();
        if (!await this.#loader.loadAll()) {
            replaceChildren(this, make('p', { class: 'empty' }, t('device.unknown', { device: this.#name })));
        }
    }

    #show() {
        const { view, parts } = currentRoute();
        if (view !== 'device' || parts[0] !== this.#name) {
            return;
        }
        const group = this.#groupOf(parts[1]);
        if (group.id !== this.#shownGroup || group.id === 'favourites') {
            this.#shownGroup = group.id;
            this.#makeTabs(group.id);
            this.#makeContent(group, parts[2]);
        }
        this.#update();
    }

    /** @param {string | undefined} id */
    #groupOf(id) {
        if (id === 'compare') {
            return { id, sections: [] };
        }
        const groups = groupsOf(allProperties());
        const starred = favourites().size > 0 ? favouritesGroup : groups[0];
        return id === 'favourites' ? favouritesGroup : groups.find((group) => group.id === id) ?? starred ?? favouritesGroup;
    }

    /** @param {string} shown */
    #makeTabs(shown) {
        const names = ['favourites', ...groupsOf(allProperties()).map((group) => group.id), 'compare'];
        const textOf = (/** @type {string} */ id) => t(/** @type {any} */ (`group.${id}`));
        const links = names.map((id) => make('a', { href: linkTo('device', [this.#name, id]), 'aria-current': id === shown ? 'page' : null }, textOf(id)));
        const select = makeSelect(names.map((id) => [id, textOf(id)]), shown, { 'aria-label': t('device.groups') });
        select.addEventListener('change', () => (location.hash = linkTo('device', [this.#name, select.value])));
        replaceChildren(this.#tabs, select, ...links);
    }

    /** @param {import('./groups.js').Group} group @param {string} [other] */
    #makeContent(group, other) {
        const starred = favourites();
        if (group.id === 'compare') {
            this.#sections = [new DeviceCompare(this.#name, other)];
        } else if (group.id === 'favourites') {
            this.#sections = [makeSection({ id: 'favourites', patterns: [] }, allProperties().filter((property) => starred.has(property.name)), starred)];
        } else {
            this.#sections = group.sections.map((section) => makeSection(section, null, starred));
        }
        replaceChildren(this.#content, make('h2', { class: 'visually-hidden' }, t(/** @type {any} */ (`group.${group.id}`))), ...this.#sections.map((section) => section.element));
        setAttribute(this.#content, 'data-empty', group.id === 'favourites' && starred.size === 0 ? t('favourites.empty') : null);
    }

    #update() {
        const model = fleet.find(this.#name);
        if (!model) {
            return;
        }
        setAttribute(this, 'data-link', model.device.link.state);
        this.#head.update(model);
        this.#sections.forEach((section) => section.update(model));
        this.#loader.wantOffers(this.#shownProperties());
    }

    #watched() {
        return [this.#name, fleetItself, ...this.#sections.flatMap((section) => section.watched ?? [])];
    }

    #shownProperties() {
        return this.#sections.flatMap((section) => section.properties);
    }

    /** @param {KeyboardEvent} event */
    #onKey(event) {
        const isTyping = event.target instanceof HTMLElement && event.target.matches('input[type=text], input[type=number], textarea');
        if (event.key === 'z' && (event.ctrlKey || event.metaKey) && !event.shiftKey && !isTyping) {
            event.preventDefault();
            changes.undo(this.#name);
        }
    }
}

customElements.define('device-view', DeviceView);

import { fleet } from '../model/application.js';
import { fleetItself } from '../model/fleet.js';
import { may } from '../model/person.js';
import { recall, remember } from '../model/preferences.js';
import { t } from '../text/text.js';
import { Component } from '../dom/component.js';
import { append, make, makeSelect, replaceChildren, setAttribute, setText } from '../dom/element.js';
import { makeIcon } from '../dom/icons.js';
import { hasProblem } from './conditions.js';
import { openDeviceDialog } from './device_dialog.js';
import { isShown, roomsOf, tagsOf } from './fleet_filter.js';
import { FleetList } from './fleet_list.js';
import { FleetWall } from './fleet_wall.js';

const modes = /** @type {const} */ (['list', 'wall']);

/** Every device, as a list to work with or as a wall to look at. */
export class FleetView extends Component {
    #filter = { text: '', room: recall('room', ''), tag: recall('tag', ''), problems: recall('problems', false) };
    #mode = recall('fleet', /** @type {typeof modes[number]} */ ('list'));
    #tools = make('div', { class: 'toolbar' });
    #counts = make('span', { class: 'counts', role: 'status' });
    #content = make('div', { class: 'fleet-content' });
    /** @type {FleetList | FleetWall} */
    #list = new FleetList();
    /** @type {Set<string>} */
    #shown = new Set();

    start() {
        append(this, [make('h1', { class: 'visually-hidden' }, t('view.fleet')), this.#tools, this.#content]);
        this.#makeTools();
        this.#chooseMode(this.#mode);
        this.whenGone(fleet.listen((names) => this.#update(names)));
    }

    /** @param {Set<string>} names */
    #update(names) {
        if (names.has(fleetItself)) {
            this.#makeTools();
        }
        if (names.has(fleetItself) || this.#shownHaveChanged()) {
            this.#showAll();
            return;
        }
        for (const name of names) {
            const model = fleet.find(name);
            if (model) {
                this.#list.update(model);
            }
        }
        this.#count();
    }

    #visible() {
        return fleet.devices.filter((model) => isShown(model, this.#filter));
    }

    #shownHaveChanged() {
        const { text, problems } = this.#filter;
        if (!text && !problems) {
            return false;
        }
        const visible = this.#visible();
        return visible.length !== this.#shown.size || visible.some((model) => !this.#shown.has(model.device.name));
    }

    #showAll() {
        const visible = this.#visible();
        this.#shown = new Set(visible.map((model) => model.device.name));
        const focused = document.activeElement?.getAttribute('href');
        this.#list.show(visible);
        const again = focused && this.#content.contains(document.activeElement) === false && this.#content.querySelector(`[href="${CSS.escape(focused)}"]`);
        if (again instanceof HTMLElement && document.activeElement === document.body) {
            again.focus();
        }
        setAttribute(this.#content, 'data-empty', visible.length === 0 ? t('fleet.empty') : null);
        this.#count();
    }

    #count() {
        const all = fleet.devices;
        const problems = all.filter(hasProblem).length;
        const connected = all.filter((model) => model.isConnected).length;
        setText(this.#counts, t('fleet.counts', { all: all.length, connected, problems }));
        setAttribute(this.#counts, 'data-tone', problems ? 'alarm' : 'ok');
    }

    #makeTools() {
        if (this.#tools.contains(document.activeElement)) {
            return;
        }
        const search = make('input', { type: 'search', placeholder: t('fleet.search'), 'aria-label': t('fleet.search'), value: this.#filter.text });
        search.addEventListener('input', () => this.#choose({ text: search.value }));
        search.addEventListener('keydown', (event) => {
            if (event.key === 'ArrowDown') {
                /** @type {HTMLElement | null} */ (this.#content.querySelector('a'))?.focus();
            }
        });
        replaceChildren(this.#tools, search, this.#makeFilter('room', roomsOf(fleet.devices)), this.#makeFilter('tag', tagsOf(fleet.devices)),
            this.#makeProblems(), this.#counts, make('span', { class: 'space' }), this.#makeModes(), makeAdd());
    }

    /** @param {'room' | 'tag'} name @param {string[]} words */
    #makeFilter(name, words) {
        const select = makeSelect([['', t(`fleet.${name}.all`)], ...words.map((word) => /** @type {[string, string]} */ ([word, word]))],
            this.#filter[name], { 'aria-label': t(`fleet.${name}`) });
        select.addEventListener('change', () => this.#choose({ [name]: select.value }));
        return select;
    }

    #makeProblems() {
        const button = make('button', { 'aria-pressed': String(this.#filter.problems) }, makeIcon('alarm'), make('span', {}, t('fleet.problems')));
        button.addEventListener('click', () => {
            this.#choose({ problems: !this.#filter.problems });
            setAttribute(button, 'aria-pressed', String(this.#filter.problems));
        });
        return button;
    }

    #makeModes() {
        const buttons = modes.map((mode) => make('button', { 'aria-pressed': String(mode === this.#mode), onclick: () => this.#chooseMode(mode) },
            makeIcon(mode), make('span', {}, t(`fleet.${mode}`))));
        return make('span', { class: 'segments', role: 'group', 'aria-label': t('fleet.mode') }, ...buttons);
    }

    /** @param {Partial<import('./fleet_filter.js').Filter>} part */
    #choose(part) {
        Object.assign(this.#filter, part);
        remember('room', this.#filter.room);
        remember('tag', this.#filter.tag);
        remember('problems', this.#filter.problems);
        this.#showAll();
    }

    /** @param {typeof modes[number]} mode */
    #chooseMode(mode) {
        this.#mode = mode;
        remember('fleet', mode);
        this.#list = mode === 'list' ? new FleetList() : new FleetWall();
        this.#content.replaceChildren(this.#list.element);
        this.#tools.querySelectorAll('.segments button').forEach((button, index) => setAttribute(button, 'aria-pressed', String(modes[index] === mode)));
        this.#showAll();
    }
}

function makeAdd() {
    const isAllowed = may('editFleet');
    return make('button', { disabled: !isAllowed, title: isAllowed ? null : t('may.needs', { role: t('role.engineer') }), onclick: () => openDeviceDialog(null) }, t('device.add'));
}

customElements.define('fleet-view', FleetView);

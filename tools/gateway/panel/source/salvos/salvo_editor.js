import { pathOf, problemText, request } from '../api/client.js';
import { fleet } from '../model/application.js';
import { may } from '../model/person.js';
import { notify } from '../shell/notices.js';
import { t } from '../text/text.js';
import { confirmAction } from '../dom/dialog.js';
import { make, makeField, makeSelect, replaceChildren } from '../dom/element.js';
import { openCaptureDialog } from './capture_dialog.js';
import { previewOf } from './preview.js';
import { Runner } from './runner.js';
import { makeStepsTable } from './steps_table.js';

/** @typedef {import('../types').Salvo} Salvo */
/** @typedef {import('../types').Step} Step */

/** One salvo: its steps, what they would change now, and its run. */
export class SalvoEditor {
    #salvo;
    #isNew;
    #others;
    #saved;
    #onlyDifferent = false;
    #runner = new Runner();
    #steps = make('div');
    #label;
    #name;
    #onFailure;
    #stopListening = fleet.listen(() => this.#showSteps());
    element;

    /** @param {Salvo} salvo @param {boolean} isNew @param {Salvo[]} others @param {(name: string | null) => void} saved */
    constructor(salvo, isNew, others, saved) {
        this.#salvo = { ...salvo, steps: [...salvo.steps] };
        this.#isNew = isNew;
        this.#others = others;
        this.#saved = saved;
        this.#label = make('input', { value: salvo.label, required: true });
        this.#name = make('input', { value: salvo.name, required: true, disabled: !isNew, pattern: '[a-z0-9][a-z0-9\\-]{0,62}' });
        this.#onFailure = makeSelect(['stop', 'continue', 'roll-back'].map((word) => [word, t(/** @type {any} */ (`on-failure.${word}`))]), salvo.onFailure);
        const fields = make('div', { class: 'fields in-line' }, makeField(t('salvo.label'), this.#label), makeField(t('salvo.name'), this.#name), makeField(t('salvo.on-failure'), this.#onFailure));
        this.element = make('section', { class: 'card', 'aria-label': salvo.label || t('salvo.new') }, make('h2', {}, isNew ? t('salvo.new') : salvo.label || salvo.name), fields, this.#makeTools(), this.#steps, this.#runner.element);
        this.#showSteps();
    }

    stop() {
        this.#stopListening();
        this.#runner.stop();
    }

    #makeTools() {
        const canEdit = may('editSalvo');
        const note = canEdit ? null : t('may.needs', { role: t('role.engineer') });
        const from = makeSelect([['', t('salvo.from')], ...this.#others.map((other) => /** @type {[string, string]} */ ([other.name, other.label || other.name]))], '', { 'aria-label': t('salvo.from'), disabled: !canEdit });
        from.addEventListener('change', () => this.#add(this.#others.find((other) => other.name === from.value)?.steps ?? []));
        const only = make('input', { type: 'checkbox' });
        only.addEventListener('change', () => {
            this.#onlyDifferent = only.checked;
            this.#showSteps();
        });
        const button = (/** @type {import('../text/text.js').TextKey} */ key, /** @type {() => void} */ act, /** @type {boolean} */ isAllowed, kind = '') => make('button', { class: kind, disabled: !isAllowed, title: isAllowed ? null : note, onclick: act }, t(key));
        return make('div', { class: 'toolbar' }, button('salvo.capture.open', () => openCaptureDialog((steps) => this.#add(steps)), canEdit), from, button('save', () => this.#save(), canEdit), button('salvo.remove', () => this.#remove(), canEdit && !this.#isNew),
            make('label', { class: 'check' }, only, t('salvo.only-different')), make('span', { class: 'space' }), button('salvo.check', () => this.#runner.start(this.#salvo.name, true), !this.#isNew), button('salvo.run', () => this.#run(), may('runSalvo') && !this.#isNew, 'primary'));
    }

    /** @param {Step[]} steps a later value for the same property takes the place of an earlier one */
    #add(steps) {
        const key = (/** @type {Step} */ step) => `${step.device} ${step.property}`;
        this.#salvo.steps = [...new Map([...this.#salvo.steps, ...steps].map((step) => [key(step), step])).values()];
        this.#showSteps();
    }

    #showSteps() {
        const { steps } = this.#salvo;
        const different = previewOf(steps).filter((row) => row.differs).length;
        const remove = may('editSalvo') ? (/** @type {number} */ index) => {
            steps.splice(index, 1);
            this.#showSteps();
        } : null;
        const hadFocus = this.#steps.contains(document.activeElement);
        if (!hadFocus) {
            replaceChildren(this.#steps, make('p', { class: 'note' }, steps.length ? t('salvo.summary', { count: steps.length, different }) : t('salvo.no-steps')), steps.length ? makeStepsTable(steps, { onlyDifferent: this.#onlyDifferent, remove }) : null);
        }
    }

    async #save() {
        if (![this.#label, this.#name].every((field) => field.reportValidity())) {
            return;
        }
        const body = { name: this.#name.value, label: this.#label.value, onFailure: this.#onFailure.value, steps: this.#salvo.steps };
        const answer = await (this.#isNew ? request('POST', '/salvos', body) : request('PUT', pathOf('salvos', body.name), body));
        notify(answer.ok ? t('saved') : problemText(answer, t('attempt.unreachable')), answer.ok ? 'ok' : 'alarm');
        if (answer.ok) {
            this.#saved(body.name);
        }
    }

    async #remove() {
        if (await confirmAction(t('salvo.remove.sure', { salvo: this.#salvo.label }), t('remove'))) {
            const answer = await request('DELETE', pathOf('salvos', this.#salvo.name));
            notify(answer.ok ? t('salvo.removed') : problemText(answer, t('attempt.unreachable')), answer.ok ? 'ok' : 'alarm');
            this.#saved(null);
        }
    }

    async #run() {
        const { steps, label, name } = this.#salvo;
        const different = previewOf(steps).filter((row) => row.differs).map((row) => row.step);
        if (await confirmAction(t('salvo.run.sure', { salvo: label || name, count: different.length }), t('salvo.run'), makeStepsTable(different, { onlyDifferent: false, remove: null }))) {
            await this.#runner.start(name, false);
        }
    }
}

import { get, pathOf, problemText, request } from '../api/client.js';
import { events } from '../model/application.js';
import { may } from '../model/person.js';
import { notify } from '../shell/notices.js';
import { t, tWord } from '../text/text.js';
import { make, replaceChildren } from '../dom/element.js';
import { makeRunTable } from './run_table.js';

/** @typedef {import('../types').Run} Run */

const finished = ['done', 'failed', 'rolled-back', 'interrupted'];
const lookAgain = 700; // ms; the stream is quicker, this is for when it is not there

/** Starts a salvo, shows every step as it happens, and rolls it back. */
export class Runner {
    element = make('div', { class: 'runner', 'aria-live': 'polite' });
    /** @type {Run | null} */
    #run = null;
    #timer = 0;
    #onRun = (/** @type {any} */ event) => this.#take(event.detail);

    constructor() {
        events.addEventListener('run', this.#onRun);
    }

    stop() {
        events.removeEventListener('run', this.#onRun);
        clearTimeout(this.#timer);
    }

    /** @param {string} salvo @param {boolean} dryRun */
    async start(salvo, dryRun) {
        const answer = await request('POST', pathOf('salvos', salvo, 'run'), { dryRun }, { 'Idempotency-Key': crypto.randomUUID?.() ?? String(Math.random()) });
        if (!answer.ok) {
            this.#showProblem(answer);
            return;
        }
        const { run } = answer.body;
        await this.#look(typeof run === 'object' ? run.id : run);
    }

    /** @param {import('../api/client.js').Answer} answer */
    #showProblem(answer) {
        const steps = answer.body?.steps ?? [];
        replaceChildren(this.element, make('p', { class: 'tone-alarm' }, problemText(answer, t('attempt.unreachable'))), steps.length ? makeRunTable({ id: '', salvo: '', state: 'failed', steps }) : null);
    }

    /** @param {string} id */
    async #look(id) {
        clearTimeout(this.#timer);
        const answer = await get(pathOf('runs', id));
        if (answer.ok) {
            this.#run = answer.body;
            this.#show();
        }
        if (!this.#isFinished()) {
            this.#timer = setTimeout(() => this.#look(id), lookAgain);
        }
    }

    #isFinished() {
        return this.#run !== null && finished.includes(this.#run.state);
    }

    /** @param {Run} run */
    #take(run) {
        if (run.id === this.#run?.id && run.steps) {
            this.#run = run;
            this.#show();
        }
    }

    #show() {
        const run = /** @type {Run} */ (this.#run);
        const canRollBack = this.#isFinished() && !run.dryRun && run.state !== 'rolled-back' && may('runSalvo');
        const back = make('button', { disabled: !canRollBack, onclick: () => this.#rollBack(run.id) }, t('run.roll-back'));
        replaceChildren(this.element, make('div', { class: 'toolbar' }, make('strong', {}, t(run.dryRun ? 'run.check' : 'run.state', { state: tWord('run', run.state) })), run.dryRun ? null : back), makeRunTable(run));
    }

    /** @param {string} id */
    async #rollBack(id) {
        const answer = await request('POST', pathOf('runs', id, 'roll-back'), {});
        if (answer.ok) {
            await this.#look(id);
        } else {
            notify(problemText(answer, t('attempt.unreachable')), 'alarm');
        }
    }
}

import { pathOf, problemText, request } from '../api/client.js';
import { notify } from '../shell/notices.js';
import { t, tWord } from '../text/text.js';
import { timeText } from '../text/times.js';
import { confirmAction, openDialog } from '../dom/dialog.js';
import { make, makeField, makeSelect } from '../dom/element.js';
import { makeRoleFields, scopesText } from './scope_entry.js';

/** @typedef {import('../types').Token} Token */

const day = 86400000;

/** @param {Token[]} tokens @param {boolean} isAdmin @param {() => void} again */
export function makeTokens(tokens, isAdmin, again) {
    const rows = tokens.map((token) => make('tr', {}, make('th', { scope: 'row' }, token.name), make('td', {}, tWord('role', token.role)), make('td', {}, scopesText(token.scopes)),
        make('td', {}, token.expires ? t('token.until', { time: timeText(token.expires) }) : t('token.no-end')),
        make('td', { class: 'actions' }, make('button', { 'aria-label': t('token.revoke.named', { token: token.name }), onclick: () => revoke(token, again) }, t('token.revoke')))));
    const add = make('button', { disabled: !isAdmin, title: isAdmin ? null : t('may.needs', { role: t('role.admin') }), onclick: () => create(again) }, t('token.add'));
    return make('section', { class: 'card' }, make('h2', {}, t('tokens')), make('p', { class: 'note' }, t('tokens.note')), make('table', { class: 'lines' }, make('tbody', {}, ...rows)), make('div', { class: 'toolbar' }, add));
}

/** @param {() => void} again */
function create(again) {
    const name = make('input', { required: true });
    const lasts = makeSelect([['30', t('token.days', { days: 30 })], ['365', t('token.days', { days: 365 })], ['', t('token.no-end')]], '365');
    const rights = makeRoleFields('viewer', []);
    const dialog = openDialog(t('token.add'), make('div', { class: 'fields' }, makeField(t('token.name'), name), makeField(t('token.lasts'), lasts), ...rights.fields),
        [make('button', { class: 'primary', value: 'save', type: 'submit' }, t('token.create'))]);
    dialog.addEventListener('close', async () => {
        if (dialog.returnValue === 'save') {
            const expires = lasts.value ? new Date(Date.now() + Number(lasts.value) * day).toISOString() : null;
            showOnce(await request('POST', '/tokens', { name: name.value, expires, ...rights.read() }), again);
        }
    });
}

/** @param {import('../api/client.js').Answer} answer @param {() => void} again */
function showOnce(answer, again) {
    if (!answer.ok) {
        notify(problemText(answer, t('attempt.unreachable')), 'alarm');
        return;
    }
    const field = make('input', { value: answer.body.token, readonly: true, 'aria-label': t('tokens') });
    const dialog = openDialog(t('token.once'), make('div', { class: 'fields' }, field, make('p', { class: 'note' }, t('token.once.note'))), []);
    field.select();
    dialog.addEventListener('close', again);
}

/** @param {Token} token @param {() => void} again */
async function revoke(token, again) {
    if (await confirmAction(t('token.revoke.sure', { token: token.name }), t('token.revoke'))) {
        const answer = await request('DELETE', pathOf('tokens', String(token.id)));
        notify(answer.ok ? t('token.revoked') : problemText(answer, t('attempt.unreachable')), answer.ok ? 'ok' : 'alarm');
        again();
    }
}

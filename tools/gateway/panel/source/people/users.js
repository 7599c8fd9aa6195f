import { pathOf, problemText, request } from '../api/client.js';
import { notify } from '../shell/notices.js';
import { t, tWord } from '../text/text.js';
import { confirmAction, openDialog } from '../dom/dialog.js';
import { make, makeField } from '../dom/element.js';
import { makeRoleFields, scopesText } from './scope_entry.js';

/** @typedef {import('../types').User} User */

/** @param {User[]} users @param {boolean} isAdmin @param {() => void} again */
export function makeUsers(users, isAdmin, again) {
    const rows = users.map((user) => make('tr', {}, make('th', { scope: 'row' }, user.name), make('td', {}, tWord('role', user.role)), make('td', {}, scopesText(user.scopes)),
        make('td', { class: 'actions' }, make('button', { 'aria-label': t('user.edit.named', { user: user.name }), onclick: () => edit(user, again) }, t('edit')),
            make('button', { 'aria-label': t('user.remove.named', { user: user.name }), onclick: () => remove(user, again) }, t('remove')))));
    const add = make('button', { disabled: !isAdmin, title: isAdmin ? null : t('may.needs', { role: t('role.admin') }), onclick: () => edit(null, again) }, t('user.add'));
    return make('section', { class: 'card' }, make('h2', {}, t('users')), make('table', { class: 'lines' }, make('tbody', {}, ...rows)),
        isAdmin ? null : make('p', { class: 'note' }, t('may.needs', { role: t('role.admin') })), make('div', { class: 'toolbar' }, add));
}

/** @param {User | null} user @param {() => void} again */
function edit(user, again) {
    const name = make('input', { value: user?.name ?? '', required: true, disabled: Boolean(user) });
    const password = make('input', { type: 'password', autocomplete: 'new-password', required: !user });
    const rights = makeRoleFields(user?.role ?? 'operator', user?.scopes ?? []);
    const dialog = openDialog(user ? t('user.edit.named', { user: user.name }) : t('user.add'), make('div', { class: 'fields' }, makeField(t('user.name'), name),
        makeField(t('sign-in.password'), password, user ? t('user.password.keep') : undefined), ...rights.fields), [make('button', { class: 'primary', value: 'save', type: 'submit' }, t('save'))]);
    dialog.addEventListener('close', async () => {
        if (dialog.returnValue === 'save') {
            const body = { ...rights.read(), ...(password.value ? { password: password.value } : {}) };
            report(await (user ? request('PATCH', pathOf('users', user.name), body) : request('POST', '/users', { name: name.value, ...body })), again);
        }
    });
}

/** @param {User} user @param {() => void} again */
async function remove(user, again) {
    if (await confirmAction(t('user.remove.sure', { user: user.name }), t('remove'))) {
        report(await request('DELETE', pathOf('users', user.name)), again);
    }
}

/** @param {import('../api/client.js').Answer} answer @param {() => void} again */
function report(answer, again) {
    notify(answer.ok ? t('saved') : problemText(answer, t('attempt.unreachable')), answer.ok ? 'ok' : 'alarm');
    again();
}

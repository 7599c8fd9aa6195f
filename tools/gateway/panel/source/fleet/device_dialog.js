import { pathOf, problemText, request } from '../api/client.js';
import { readFleet } from '../model/application.js';
import { notify } from '../shell/notices.js';
import { t, tWord } from '../text/text.js';
import { confirmAction, openDialog } from '../dom/dialog.js';
import { make, makeField, setText } from '../dom/element.js';

/** @typedef {import('../types').Device} Device */

/** Adds a device, or changes how the gateway knows one. @param {Device | null} device */
export function openDeviceDialog(device) {
    const fields = makeFields(device);
    const trial = make('p', { class: 'note', role: 'status' });
    const probe = make('button', { type: 'button', onclick: () => tryAddress(fields.address.value, trial) }, t('device.try'));
    const content = make('div', { class: 'fields' }, ...Object.entries(fields).map(([name, field]) =>
        makeField(t(/** @type {any} */ (`device.${name}`)), field, name === 'name' ? t('device.name.note') : undefined)), make('div', {}, probe, trial));
    const remove = device ? make('button', { type: 'submit', value: 'remove', class: 'danger', formnovalidate: true }, t('device.remove')) : null;
    const buttons = [remove, make('button', { type: 'submit', value: 'save', class: 'primary' }, t('save'))].filter((button) => button !== null);
    const dialog = openDialog(device ? t('device.edit.title', { device: device.label }) : t('device.add.title'), content, buttons);
    dialog.addEventListener('close', () => finish(dialog.returnValue, device, fields));
}

/** @typedef {Record<'name' | 'label' | 'address' | 'room' | 'tags', HTMLInputElement>} Fields */

/** @param {Device | null} device @returns {Fields} */
function makeFields(device) {
    return {
        label: make('input', { value: device?.label ?? '', required: true }),
        name: make('input', { value: device?.name ?? '', required: true, pattern: '[a-z0-9][a-z0-9\\-]{0,62}' }),
        address: make('input', { value: device?.address ?? '', required: true }),
        room: make('input', { value: device?.room ?? '' }),
        tags: make('input', { value: device?.tags.join(', ') ?? '' }),
    };
}

/** @param {string} address @param {HTMLElement} trial */
async function tryAddress(address, trial) {
    setText(trial, t('device.trying'));
    const answer = await request('POST', '/probe', { address });
    setText(trial, answer.ok ? `${tWord('link', answer.body.state)}. ${answer.body.sentence}` : problemText(answer, t('attempt.unreachable')));
}

/** @param {string} action @param {Device | null} device @param {Fields} fields */
async function finish(action, device, fields) {
    if (action === 'remove' && device && await confirmAction(t('device.remove.sure', { device: device.label }), t('device.remove'))) {
        report(await request('DELETE', pathOf('devices', device.name)), t('device.removed'));
    } else if (action === 'save') {
        const { name, label, address, room, tags } = fields;
        const body = { name: name.value, label: label.value, address: address.value, room: room.value,
            tags: tags.value.split(',').map((tag) => tag.trim()).filter(Boolean) };
        report(await (device ? request('PATCH', pathOf('devices', device.name), body) : request('POST', '/devices', { ...body, enabled: true })), t('saved'));
    }
}

/** @param {import('../api/client.js').Answer} answer @param {string} good */
function report(answer, good) {
    notify(answer.ok ? good : problemText(answer, t('attempt.unreachable')), answer.ok ? 'ok' : 'alarm');
    readFleet();
}

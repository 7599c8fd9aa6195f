import { problemText, request } from '../api/client.js';
import { fleet } from '../model/application.js';
import { allProperties } from '../model/properties.js';
import { groupsOf } from '../device/groups.js';
import { notify } from '../shell/notices.js';
import { t } from '../text/text.js';
import { openDialog } from '../dom/dialog.js';
import { make } from '../dom/element.js';

/** @typedef {import('../types').Step} Step */

/** Chooses devices and groups of properties, and takes their present values. @param {(steps: Step[]) => void} take */
export function openCaptureDialog(take) {
    const devices = fleet.devices.map(({ device, isConnected }) => makeBox(device.name, device.label || device.name, !isConnected));
    const groups = groupsOf(allProperties()).map((group) => makeBox(group.sections.flatMap((section) => section.patterns).join(' '), t(/** @type {any} */ (`group.${group.id}`)), false));
    const part = (/** @type {import('../text/text.js').TextKey} */ title, /** @type {Box[]} */ boxes) => make('fieldset', {}, make('legend', {}, t(title)), ...boxes.map((box) => box.element));
    const dialog = openDialog(t('salvo.capture.title'), make('div', { class: 'capture' }, part('salvo.devices', devices), part('salvo.groups', groups)),
        [make('button', { class: 'primary', type: 'submit', value: 'take' }, t('salvo.capture'))]);
    dialog.addEventListener('close', async () => {
        if (dialog.returnValue === 'take') {
            await capture(chosen(devices), chosen(groups).flatMap((patterns) => patterns.split(' ')), take);
        }
    });
}

/** @typedef {ReturnType<typeof makeBox>} Box */

/** @param {string} value @param {string} label @param {boolean} disabled */
function makeBox(value, label, disabled) {
    const input = make('input', { type: 'checkbox', value, disabled });
    return { input, element: make('label', { class: 'check' }, input, label) };
}

/** @param {Box[]} boxes */
const chosen = (boxes) => boxes.filter((box) => box.input.checked).map((box) => box.input.value);

/** @param {string[]} devices @param {string[]} properties @param {(steps: Step[]) => void} take */
async function capture(devices, properties, take) {
    const answer = await request('POST', '/salvos/capture', { devices, properties });
    if (answer.ok) {
        take(answer.body.steps);
        notify(t('salvo.captured', { count: answer.body.steps.length }));
    } else {
        notify(problemText(answer, t('attempt.unreachable')), 'alarm');
    }
}

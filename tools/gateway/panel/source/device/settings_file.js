import { pathOf, problemText, request } from '../api/client.js';
import { notify } from '../shell/notices.js';
import { t } from '../text/text.js';
import { confirmAction } from '../dom/dialog.js';
import { make } from '../dom/element.js';

/** @param {string} device */
export const settingsAddress = (device) => `/api/v1${pathOf('devices', device, 'settings')}`;

/** Plays a settings file back to a device, once somebody has chosen one and agreed. @param {string} device */
export function loadSettingsFile(device) {
    const input = make('input', { type: 'file', accept: '.txt,text/plain' });
    input.addEventListener('change', async () => {
        const file = input.files?.[0];
        if (file && await confirmAction(t('settings.load.sure', { file: file.name, device }), t('settings.load'))) {
            const answer = await request('PUT', pathOf('devices', device, 'settings'), await file.text(), { 'Content-Type': 'text/plain' });
            notify(answer.ok ? t('settings.loaded') : problemText(answer, t('attempt.unreachable')), answer.ok ? 'ok' : 'alarm');
        }
    });
    input.click();
}

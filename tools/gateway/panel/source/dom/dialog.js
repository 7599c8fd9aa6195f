import { t } from '../text/text.js';
import { make } from './element.js';

/**
 * Asks before something that cannot be undone with one key.
 * @param {string} question
 * @param {string} action the name of the button that does it
 * @param {Node | null} [details]
 * @returns {Promise<boolean>}
 */
export function confirmAction(question, action, details = null) {
    return new Promise((resolve) => {
        const yes = make('button', { class: 'primary', value: 'yes', type: 'submit' }, action);
        const dialog = openDialog(question, details ?? '', [yes]);
        dialog.addEventListener('close', () => resolve(dialog.returnValue === 'yes'));
        yes.focus();
    });
}

/**
 * A dialog that Escape and Cancel close.
 * @param {string} title
 * @param {Node | string} content
 * @param {HTMLElement[]} buttons
 */
export function openDialog(title, content, buttons) {
    const cancel = make('button', { value: '', type: 'submit', formnovalidate: true }, buttons.length ? t('cancel') : t('close'));
    const heading = make('h2', { id: 'dialog-title' }, title);
    const form = make('form', { method: 'dialog' }, heading, make('div', { class: 'dialog-content' }, content),
        make('div', { class: 'dialog-buttons' }, cancel, ...buttons));
    const dialog = make('dialog', { 'aria-labelledby': 'dialog-title' }, form);
    form.addEventListener('submit', (event) => {
        event.preventDefault();
        dialog.close(/** @type {HTMLButtonElement | null} */ (event.submitter)?.value ?? '');
    });
    dialog.addEventListener('close', () => dialog.remove());
    document.body.append(dialog);
    dialog.showModal();
    return dialog;
}

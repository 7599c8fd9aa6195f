import { t } from '../text/text.js';
import { openDialog } from '../dom/dialog.js';
import { make } from '../dom/element.js';

/** @type {[string, import('../text/text.js').TextKey][]} */
const rows = [['/', 'shortcut.search'], ['\u2191 \u2193', 'shortcut.rows'], ['Enter', 'shortcut.enter'], ['Esc', 'shortcut.escape'],
    ['Ctrl Z', 'shortcut.undo'], ['?', 'shortcut.help']];

export function showShortcuts() {
    if (!document.querySelector('dialog')) {
        openDialog(t('shortcuts'), make('dl', { class: 'shortcuts' },
            ...rows.flatMap(([key, text]) => [make('dt', {}, make('kbd', {}, key)), make('dd', {}, t(text))])), []);
    }
}

/** Keys that work wherever one does not type. */
export function listenForShortcuts() {
    document.addEventListener('keydown', (event) => {
        const isTyping = event.target instanceof HTMLElement && event.target.matches('input:not([type=range]), select, textarea');
        if (isTyping || event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        const search = /** @type {HTMLElement | null} */ (document.querySelector('input[type=search]'));
        if (event.key === '/' && search) {
            event.preventDefault();
            search.focus();
        } else if (event.key === '?') {
            showShortcuts();
        }
    });
}

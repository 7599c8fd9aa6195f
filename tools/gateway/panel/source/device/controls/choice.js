import { wordLabel } from '../../text/labels.js';
import { t } from '../../text/text.js';
import { make, setAttribute } from '../../dom/element.js';

/**
 * A list of the words that the device offers. Walking through it with the arrow keys sends nothing: Enter does.
 * @param {import('../control.js').ControlSetup} setup
 * @param {string[]} words
 * @returns {import('../control.js').Control}
 */
export function makeChoice({ label, send }, words) {
    const select = make('select', { 'aria-label': label }, ...words.map((word) => make('option', { value: word }, wordLabel(word))));
    const hint = make('span', { class: 'note', hidden: true }, t('control.enter'));
    const element = make('div', { class: 'choice' }, select, hint);
    let reported = '';
    let isWalking = false;

    /** @param {boolean} isArmed */
    function arm(isArmed) {
        hint.hidden = !isArmed;
        setAttribute(element, 'data-armed', isArmed);
    }

    function apply() {
        arm(false);
        if (select.value !== reported) {
            send(select.value);
        }
    }

    function giveUp() {
        arm(false);
        select.value = reported;
    }

    select.addEventListener('pointerdown', () => (isWalking = false));
    select.addEventListener('keydown', (event) => {
        isWalking = event.key !== 'Enter';
        if (event.key === 'Enter' && !hint.hidden) {
            event.preventDefault();
            apply();
        } else if (event.key === 'Escape') {
            giveUp();
        }
    });
    select.addEventListener('change', () => isWalking ? arm(select.value !== reported) : apply());
    select.addEventListener('blur', giveUp);

    return {
        element,
        show: (value) => {
            reported = value === null ? '' : String(value);
            showReported(select, words, reported, hint.hidden);
        },
        enable: (isEnabled, why) => {
            select.disabled = !isEnabled;
            select.title = why;
        },
    };
}

/** A value that is not offered any more is shown, but cannot be chosen again. @param {HTMLSelectElement} select @param {string[]} words @param {string} reported @param {boolean} isIdle */
function showReported(select, words, reported, isIdle) {
    select.querySelector('option[data-extra]')?.remove();
    if (!words.includes(reported)) {
        const text = reported ? t('control.not-offered', { value: wordLabel(reported) }) : t('value.unknown');
        select.prepend(make('option', { value: reported, disabled: true, 'data-extra': true }, text));
    }
    if (isIdle) {
        select.value = reported;
    }
}

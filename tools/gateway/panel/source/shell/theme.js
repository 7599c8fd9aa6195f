import { recall, remember } from '../model/preferences.js';

export const themes = /** @type {const} */ (['auto', 'dark', 'light', 'contrast']);

/** @typedef {typeof themes[number]} Theme */

const wantsContrast = matchMedia('(prefers-contrast: more)');
const wantsLight = matchMedia('(prefers-color-scheme: light)');

export const chosenTheme = () => recall('theme', /** @type {Theme} */ ('auto'));

/** @param {Theme} theme */
export function chooseTheme(theme) {
    remember('theme', theme);
    applyTheme();
}

export function applyTheme() {
    const chosen = chosenTheme();
    const automatic = wantsContrast.matches ? 'contrast' : wantsLight.matches ? 'light' : 'dark';
    document.documentElement.dataset.theme = chosen === 'auto' ? automatic : chosen;
}

wantsContrast.addEventListener('change', applyTheme);
wantsLight.addEventListener('change', applyTheme);

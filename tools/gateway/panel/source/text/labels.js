import { english } from './english.js';

/** A property's name as people say it. @param {string} name @returns {string} */
export function propertyLabel(name) {
    const key = `property.${name}`;
    if (key in english) {
        return english[/** @type {import('./text.js').TextKey} */ (key)];
    }
    const numbered = /^(.*)\.(\d+)$/.exec(name);
    if (numbered && `property.${numbered[1]}` in english) {
        return `${propertyLabel(numbered[1])} ${numbered[2]}`;
    }
    const words = name.split('.').slice(1).join(' ').replaceAll('-', ' ');
    return words.charAt(0).toUpperCase() + words.slice(1);
}

/** A device's word as people read it; the word itself if there is nothing better. @param {string} word */
export function wordLabel(word) {
    const key = `word.${word}`;
    return key in english ? english[/** @type {import('./text.js').TextKey} */ (key)] : word;
}

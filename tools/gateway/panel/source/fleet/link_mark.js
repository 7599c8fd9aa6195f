// What a link's state means: a shape, a word, and how serious it is.
import { tWord } from '../text/text.js';

/** @typedef {{icon: import('../dom/icons.js').Icon, tone: 'ok' | 'waiting' | 'off' | 'warning' | 'alarm', text: string}} Mark */

/** @type {Record<string, [Mark['icon'], Mark['tone']]>} */
const marks = {
    connected: ['live', 'ok'],
    connecting: ['waiting', 'waiting'],
    disabled: ['off', 'off'],
    'remote-locked': ['lock', 'warning'],
};

/** @param {import('../types').Link} link @returns {Mark} */
export function markOf(link) {
    const [icon, tone] = marks[link.state] ?? ['broken', 'alarm'];
    return { icon, tone, text: tWord('link', link.state) };
}

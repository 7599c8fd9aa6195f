import { make } from '../dom/element.js';
import { gutter } from './layout.js';

const leastDrag = 6; // pixels

/**
 * Dragging over the lanes chooses a part of the period.
 * @param {HTMLElement} lanes
 * @param {(from: number, to: number) => void} choose as fractions of the period
 */
export function listenForZoom(lanes, choose) {
    const band = make('div', { class: 'zoom-band', hidden: true });
    let start = 0;

    const fraction = (/** @type {number} */ x) => {
        const { left, width } = lanes.getBoundingClientRect();
        return Math.min(1, Math.max(0, (x - left - gutter) / (width - gutter)));
    };

    lanes.addEventListener('pointerdown', (event) => {
        const isLink = /** @type {Element} */ (event.target).closest('a, button, select');
        if (event.button === 0 && !isLink) {
            start = event.clientX;
            lanes.append(band);
            lanes.setPointerCapture(event.pointerId);
        }
    });
    lanes.addEventListener('pointermove', (event) => {
        if (lanes.hasPointerCapture(event.pointerId)) {
            const [from, to] = [fraction(start), fraction(event.clientX)].sort((a, b) => a - b);
            const width = lanes.clientWidth - gutter;
            band.hidden = Math.abs(event.clientX - start) < leastDrag;
            band.style.left = `${gutter + from * width}px`;
            band.style.width = `${(to - from) * width}px`;
        }
    });
    lanes.addEventListener('pointerup', (event) => {
        band.remove();
        if (Math.abs(event.clientX - start) >= leastDrag && lanes.hasPointerCapture(event.pointerId)) {
            const [from, to] = [fraction(start), fraction(event.clientX)].sort((a, b) => a - b);
            choose(from, to);
        }
    });
}

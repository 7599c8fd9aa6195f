import { make } from '../dom/element.js';
import { gutter } from './layout.js';
import { stepsOf } from './series.js';

const height = 150;

/** @typedef {import('../vendor/uplot').Plot} Plot */

/** uPlot is fetched when the first curve is drawn. Null if the panel was built without it. */
const loadPlot = async () => (await import('../vendor/uplot.js')).default;

/** A number over time. */
export class Curve {
    element = make('div', { class: 'curve' });
    /** @type {Plot | null} */
    #plot = null;

    /** @param {import('./series.js').Stretch[]} stretches @param {import('./history_query.js').Period} period @returns {Promise<boolean>} false if there is no uPlot */
    async draw(stretches, period) {
        const PlotClass = await loadPlot();
        if (!PlotClass) {
            return false;
        }
        this.destroy();
        const steps = /** @type {(number | null)[][]} */ (stepsOf(stretches));
        this.#plot = new PlotClass(optionsOf(PlotClass, this.element, period), steps, this.element);
        this.#plot.root.setAttribute('aria-hidden', 'true');
        return true;
    }

    destroy() {
        this.#plot?.destroy();
        this.#plot = null;
    }
}

/** @param {any} PlotClass @param {HTMLElement} element @param {import('./history_query.js').Period} period */
function optionsOf(PlotClass, element, period) {
    const style = getComputedStyle(document.documentElement);
    const colour = (/** @type {string} */ name) => style.getPropertyValue(name).trim();
    const axis = { stroke: colour('--text-quiet'), font: `12px ${style.fontFamily}`, grid: { stroke: colour('--line'), width: 1 }, ticks: { show: false } };
    return {
        width: element.clientWidth || 600, height, legend: { show: false }, padding: [8, 0, 8, 0],
        cursor: { drag: { setScale: false, x: false, y: false }, points: { show: false } },
        scales: { x: { time: true, min: period.from / 1000, max: period.to / 1000, range: [period.from / 1000, period.to / 1000] } },
        axes: [{ ...axis, size: 0, values: () => [] }, { ...axis, size: gutter }],
        series: [{}, { stroke: colour('--curve'), width: 2, points: { show: false }, paths: PlotClass.paths.stepped({ align: 1 }) }],
    };
}

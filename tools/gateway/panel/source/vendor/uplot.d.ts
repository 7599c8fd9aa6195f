// The part of uPlot that the panel uses.
export interface Plot {
    destroy(): void;
    setData(data: (number | null | undefined)[][]): void;
    setSize(size: { width: number, height: number }): void;
    root: HTMLElement;
}
type PlotClass = {
    new(options: object, data: (number | null | undefined)[][], target: HTMLElement): Plot;
    paths: { stepped(options: { align: 1 | -1 }): object };
};
declare const uPlot: PlotClass | null;
export default uPlot;
